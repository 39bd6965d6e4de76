#pragma once
// The tone call through ALSA's default device (PulseAudio or PipeWire on a
// desktop). Without a sound device it still takes its time and reports nothing.

#include "platform/tone.h"

namespace zelvan {

class AlsaTone : public Tone {
  public:
    void play(int hz, int ms) override;
};

}  // namespace zelvan
