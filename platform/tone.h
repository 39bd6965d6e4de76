#pragma once
// The tone call: one tone of a frequency for a duration. It blocks for the
// duration, as the operating system's beep does.

namespace zelvan {

class Tone {
  public:
    virtual ~Tone() = default;
    virtual void play(int hz, int ms) = 0;
};

}  // namespace zelvan
