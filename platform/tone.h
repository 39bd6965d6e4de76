#pragma once
// The tone call: one tone of a frequency for a duration. It blocks for the
// duration, as the operating system's beep does.

namespace zelvan {

class Tone {
  public:
    virtual ~Tone() = default;
    virtual void play(int hz, int ms) = 0;
};

// The two-tone beep of a notice or a message.
inline void doubleBeep(Tone& tone) {
    tone.play(740, 250);
    tone.play(400, 250);
}

// No sound and no time taken: for benchmarks and fuzzing, where a beep would
// only stand in the way.
class SilentTone : public Tone {
  public:
    void play(int, int) override {}
};

}  // namespace zelvan
