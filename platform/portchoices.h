#pragma once
// The entries of the serial setup lists, each with the value it stands for.

#include <array>
#include <cstdint>

namespace zelvan {

struct PortChoice {
    const char* text;
    std::int32_t value;
};

inline constexpr std::array<PortChoice, 9> kBaudChoices{{
    {"300", 300},
    {"1200", 1200},
    {"2400", 2400},
    {"4800", 4800},
    {"9600", 9600},
    {"19200", 19200},
    {"38400", 38400},
    {"57600", 57600},
    {"115200", 115200},
}};

inline constexpr std::array<PortChoice, 5> kParityChoices{{
    {"None", 0},
    {"Odd", 1},
    {"Even", 2},
    {"Mark", 3},
    {"Space", 4},
}};

inline constexpr std::array<PortChoice, 4> kDataBitsChoices{{
    {"5", 5},
    {"6", 6},
    {"7", 7},
    {"8", 8},
}};

inline constexpr std::array<PortChoice, 3> kStopBitsChoices{{
    {"1", 0},
    {"1.5", 1},
    {"2", 2},
}};

// The position of a value in a list, or -1 when the list has no entry for it.
template <std::size_t N>
constexpr int choiceIndex(const std::array<PortChoice, N>& choices, std::int32_t value) {
    for (std::size_t i = 0; i < N; ++i)
        if (choices[i].value == value) return static_cast<int>(i);
    return -1;
}

}  // namespace zelvan
