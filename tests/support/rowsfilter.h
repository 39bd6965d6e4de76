#pragma once
// A filter whose 15 rows the test writes directly, as a decoder or a text
// filter would leave them, and a rig that selects it under a line output
// engine writing to a recording link.

#include <array>
#include <string>

#include "core/inputfilter.h"
#include "display/lineoutput.h"
#include "support/fakes.h"

namespace zelvan::testing {

class RowsFilter : public InputFilter {
  public:
    void showForm() override {}
    void hideForm() override {}
    std::int16_t filterEntry(const std::string&, std::string& out) override {
        out.clear();
        return kStyleNothing;
    }
    // Row i with trailing blanks removed, as every filter serves it.
    std::string getExternalText(std::int16_t i) override {
        if (i < 1 || i > 15) return std::string();
        const std::string& row = rows[static_cast<std::size_t>(i)];
        return row.substr(0, row.find_last_not_of(' ') + 1);
    }
    std::string getExternalTextTrimmed(std::int16_t i) override {
        const std::string text = getExternalText(i);
        const std::size_t first = text.find_first_not_of(' ');
        return first == std::string::npos ? std::string() : text.substr(first);
    }

    void clear() { rows.fill(std::string()); }

    std::array<std::string, 16> rows;  // 1 to 15; 0 unused
};

struct EngineRig {
    EngineRig() {
        rig.tavo.bInTDS = true;
        rig.tavo.frmInTDS = &filter;
        out.bFilterOn = true;
    }
    void input(std::int16_t style) { out.doInput(style, std::string()); }

    Rig rig;
    RowsFilter filter;
    RecordingDisplayLink link;
    LineOutput out{rig.tavo, link};
};

}  // namespace zelvan::testing
