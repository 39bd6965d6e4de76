#pragma once
// The real program between two pseudo-terminals, on the demo's rig, with the
// caption helpers the tests and the latency benchmark feed it.

#include "demo/programrig.h"
#include "l21fakes.h"

namespace zelvan::testing {
using zelvan::Links;
using zelvan::ProgramRig;
}  // namespace zelvan::testing
