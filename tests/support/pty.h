#pragma once
// The pseudo-terminal end that the demo's decoder box and sign stand on.

#include "demo/ptyend.h"

namespace zelvan::testing {
using zelvan::PtyEnd;
}  // namespace zelvan::testing
