#include "line21/ccdata.h"

namespace zelvan::line21 {

namespace {

constexpr std::uint8_t kValid = 0x04;
constexpr std::uint8_t kTypeMask = 0x03;
constexpr std::uint8_t kParityMask = 0x7F;

}  // namespace

// A box at seven data bits strips the parity bit; the padding pair 0x80 0x80
// then reads as two null bytes, which a box doesn't pass on.
std::string fieldPairs(const std::uint8_t* data, std::size_t size, int field) {
    std::string pairs;
    for (std::size_t i = 0; i + kTripleSize <= size; i += kTripleSize) {
        const std::uint8_t head = data[i];
        if (!(head & kValid) || (head & kTypeMask) != field - 1) continue;
        const auto first = static_cast<char>(data[i + 1] & kParityMask);
        const auto second = static_cast<char>(data[i + 2] & kParityMask);
        if (first == 0 && second == 0) continue;
        pairs += first;
        pairs += second;
    }
    return pairs;
}

}  // namespace zelvan::line21
