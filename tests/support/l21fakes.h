#pragma once
// Line-21 byte strings as a decoder box delivers them.

#include <string>

namespace zelvan::testing {

inline std::string l21Pair(int first, int second) {
    return {static_cast<char>(first), static_cast<char>(second)};
}

// A pop-on caption on row 15: load, place, text, and the flip; each control
// pair doubled as broadcast.
inline std::string popOnCaption(const std::string& text) {
    std::string s;
    for (int code : {0x20, 0x2E, 0x70}) s += l21Pair(0x14, code) + l21Pair(0x14, code);
    s += text;
    if (text.size() % 2) s += '\0';  // text goes in pairs; a null pads the last
    return s + l21Pair(0x14, 0x2F) + l21Pair(0x14, 0x2F);
}

}  // namespace zelvan::testing
