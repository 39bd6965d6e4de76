#pragma once
// Helpers for tests of the display bytes: raw bytes from codes, and the
// readable notation written with "^" in place of the escape byte "û", so that
// a test reads like what an operator types.

#include <initializer_list>
#include <string>

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

}  // namespace zelvan::testing
