#pragma once
// Helpers for tests of the display bytes: raw bytes from codes, and the
// readable notation written with "^" in place of the escape byte "û", so that
// a test reads like what an operator types.

#include <initializer_list>
#include <string>
#include <vector>

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

// A short name for one written frame, so a test can state the order of frames:
// "bright", "dim", "rollup", "reset", "clear 2", "row 3 col 29 |BA  |".
inline std::string frameName(const std::string& f) {
    if (f.size() == 5 && f[2] == 0x7F && f[3] == 0x20) return "bright";
    if (f.size() == 5 && f[2] == 0x7F && f[3] == 0x2F) return "dim";
    if (f.size() == 7 && f[2] == 0x7F && f[3] == 0x46) return "rollup";
    if (f.size() == 7 && f[2] == 0x7F && f[3] == 0x45) return "reset";
    if (f.size() == 6 && f[3] == 0x20 && f[4] == 0x0F)
        return "clear " + std::to_string(f[2] - 0x1F);
    if (f.size() < 5) return "?";
    return "row " + std::to_string(f[2] - 0x1F) + " col " + std::to_string(f[3] - 0x1F) + " |" +
           f.substr(4, f.size() - 5) + "|";
}

inline std::vector<std::string> frameNames(const std::vector<std::string>& writes) {
    std::vector<std::string> names;
    for (const std::string& w : writes) names.push_back(frameName(w));
    return names;
}

}  // namespace zelvan::testing
