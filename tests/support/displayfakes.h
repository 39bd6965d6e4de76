#pragma once
// Test helpers of the display output; "^" stands for the escape byte "û".

#include <array>
#include <initializer_list>
#include <string>
#include <vector>

#include "display/lineoutput.h"
#include "support/fakes.h"
#include "support/rowsfilter.h"

namespace zelvan::testing {

inline std::string bytes(std::initializer_list<int> codes) {
    std::string s;
    for (int c : codes) s += static_cast<char>(c);
    return s;
}

inline std::string esc(std::string s) {
    for (char& c : s)
        if (c == '^') c = '\xFB';
    return s;
}

// "bright", "dim", "rollup", "clear 2", or "row 3 col 29 |BA  |" for a text frame.
inline std::string frameName(const std::string& f) {
    if (f.size() == 5 && f[2] == 0x7F) return f[3] == 0x20 ? "bright" : "dim";
    if (f.size() == 7 && f[2] == 0x7F) return f[3] == 0x46 ? "rollup" : "reset";
    if (f.size() == 6 && f[3] == 0x20 && f[4] == 0x0F)
        return "clear " + std::to_string(f[2] - 0x1F);
    return "row " + std::to_string(f[2] - 0x1F) + " col " + std::to_string(f[3] - 0x1F) + " |" +
           f.substr(4, f.size() - 5) + "|";
}

struct EngineRig {
    EngineRig() {
        rig.tavo.bInTDS = true;
        rig.tavo.frmInTDS = &filter;
        out.bFilterOn = true;
    }
    void input(std::int16_t style) { out.doInput(style, std::string()); }
    void setRows(std::initializer_list<std::pair<int, const char*>> rows) {
        filter.rows.fill(std::string());
        for (auto [i, text] : rows) filter.rows[static_cast<std::size_t>(i)] = text;
    }
    std::vector<std::string> sent() const {
        std::vector<std::string> names;
        for (const std::string& w : link.writes) names.push_back(frameName(w));
        return names;
    }

    Rig rig;
    RowsFilter filter;
    RecordingDisplayLink link;
    LineOutput out{rig.tavo, link};
};

}  // namespace zelvan::testing
