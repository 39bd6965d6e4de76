#pragma once
// Line-21 byte pairs out of the caption data that digital video carries: the
// cc_data of ATSC A/53, three bytes a caption word, as MPEG-2 and H.264
// pictures hold it and as a 608 caption track's packets give it. The pairs
// come out as a decoder box set to that field delivers them: parity stripped,
// padding dropped.

#include <cstddef>
#include <cstdint>
#include <string>

namespace zelvan::line21 {

inline constexpr std::size_t kTripleSize = 3;

// Each triple: five marker bits, cc_valid (bit 2) and cc_type (bits 1-0);
// cc_type 0 is field 1 (CC1/CC2), 1 is field 2 (CC3/CC4), 2 and 3 are the
// digital service, which line 21 never had. A partial triple at the end is
// dropped.
std::string fieldPairs(const std::uint8_t* data, std::size_t size, int field);

}  // namespace zelvan::line21
