#pragma once
// Test helpers of the display output; "^" stands for the escape byte "û".

#include <initializer_list>
#include <string>

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

}  // namespace zelvan::testing
