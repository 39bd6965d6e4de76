#pragma once
// A filter whose 15 rows the caller writes, for the display output on its own.

#include <array>
#include <string>

#include "core/inputfilter.h"

namespace zelvan::testing {

struct RowsFilter : InputFilter {
    void showForm() override {}
    void hideForm() override {}
    std::int16_t filterEntry(const std::string&, std::string& out) override {
        out.clear();
        return kStyleNothing;
    }
    std::string getExternalText(std::int16_t i) override {
        if (i < 1 || i > 15) return std::string();
        const std::string& row = rows[static_cast<std::size_t>(i)];
        return row.substr(0, row.find_last_not_of(' ') + 1);
    }
    std::string getExternalTextTrimmed(std::int16_t i) override { return getExternalText(i); }

    std::array<std::string, 16> rows;  // 1 to 15
};

}  // namespace zelvan::testing
