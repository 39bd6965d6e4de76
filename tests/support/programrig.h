#pragma once
// The real program between two pseudo-terminals, on the demo's rig, with the
// caption helpers the tests and the latency benchmark feed it.

#include "demo/programrig.h"
#include "display/signmodel.h"
#include "l21fakes.h"

namespace zelvan::testing {
using zelvan::Links;
using zelvan::ProgramRig;

// Whether a sign fed these bytes shows text on a row, read through the reflector.
inline bool signShows(const std::string& bytes, const std::string& text) {
    SignModel sign;
    sign.feed(bytes);
    for (int r = 1; r <= 3; ++r)
        if (sign.rowThroughReflector(r).find(text) != std::string::npos) return true;
    return false;
}

}  // namespace zelvan::testing
