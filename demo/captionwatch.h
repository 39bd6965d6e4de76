#pragma once
// Reads the sign as the audience does: the caption in the reflector, once the
// frames that paint it have all come. A caption's frames leave the program
// together, so a short quiet on the line means the sign stands still.

#include <chrono>
#include <optional>
#include <string>

#include "display/signmodel.h"

namespace zelvan {

// The rows of the sign that carry text, as the reflector shows them, trimmed,
// joined by " / ", in UTF-8 (the music note as U+266A).
std::string reflectorCaption(const SignModel& sign);

class CaptionWatch {
  public:
    using Clock = std::chrono::steady_clock;
    static constexpr auto kSettle = std::chrono::milliseconds(5);

    // The bytes the sign took at `now`.
    void take(const std::string& bytes, Clock::time_point now);
    // The caption, once the line has been quiet kSettle and the sign shows
    // text other than the last caption reported. A blank sign is not a
    // caption, but the same caption after it is reported again.
    std::optional<std::string> settled(Clock::time_point now);
    const SignModel& sign() const { return m_sign; }

  private:
    SignModel m_sign;
    Clock::time_point m_lastBytes{};
    bool m_changed = false;
    std::string m_shown;
};

}  // namespace zelvan
