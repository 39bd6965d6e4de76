#pragma once
// A program state on virtual time that makes no sound, with one fake serial
// port: what the benchmarks and fuzz targets drive.

#include "core/tavo.h"
#include "platform/settingsstore.h"
#include "platform/tone.h"
#include "support/fakeserialport.h"
#include "support/memorysettingsstore.h"
#include "support/virtualdispatch.h"

namespace zelvan::testing {

struct QuietProgram {
    VirtualDispatch dispatch;
    MemorySettingsStore store;
    SilentTone tone;
    Tavo tavo{dispatch, store, tone};
    FakeSerialPort port{dispatch};
};

}  // namespace zelvan::testing
