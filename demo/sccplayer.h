#pragma once
// The decoder box of the demo: it plays a recording's words at the pace of
// their timecodes, one word a frame at 29.97 frames a second (faster or slower
// by a speed factor), each as two bytes with the parity bit stripped.

#include <chrono>
#include <string>
#include <vector>

#include "core/sccreader.h"

namespace zelvan {

class SccPlayer {
  public:
    using Clock = std::chrono::steady_clock;
    // A looping recording starts again this long after its last word.
    static constexpr auto kLoopPause = std::chrono::seconds(2);

    SccPlayer(std::vector<SccTimedWord> schedule, double speed, bool loop);

    void start(Clock::time_point now);
    // The bytes of every word due by now that hasn't gone yet.
    std::string due(Clock::time_point now);
    // When the next word is due; far in the future once all have gone.
    Clock::time_point nextAt() const;
    bool finished() const { return m_next >= m_schedule.size(); }
    // How far into the recording the play has come, in seconds of its
    // timecodes from the first.
    double position(Clock::time_point now) const;

  private:
    Clock::time_point timeOf(std::size_t word) const;

    std::vector<SccTimedWord> m_schedule;
    double m_speed;
    bool m_loop;
    Clock::time_point m_start{};
    std::size_t m_next = 0;
};

}  // namespace zelvan
