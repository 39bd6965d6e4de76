#include "demo/sccplayer.h"

namespace zelvan {

SccPlayer::SccPlayer(std::vector<SccTimedWord> schedule, double speed, bool loop)
    : m_schedule(std::move(schedule)), m_speed(speed > 0 ? speed : 1.0), m_loop(loop) {}

void SccPlayer::start(Clock::time_point now) {
    m_start = now;
    m_next = 0;
}

SccPlayer::Clock::time_point SccPlayer::timeOf(std::size_t word) const {
    const double seconds =
        static_cast<double>(m_schedule[word].frame) / kSccFramesPerSecond / m_speed;
    return m_start +
           std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

std::string SccPlayer::due(Clock::time_point now) {
    std::string bytes;
    if (finished() && m_loop && !m_schedule.empty() &&
        now >= timeOf(m_schedule.size() - 1) + kLoopPause)
        start(now);
    for (; m_next < m_schedule.size() && timeOf(m_next) <= now; ++m_next)
        bytes += sccWordBytes(m_schedule[m_next].word);
    return bytes;
}

SccPlayer::Clock::time_point SccPlayer::nextAt() const {
    if (!finished()) return timeOf(m_next);
    if (m_loop && !m_schedule.empty()) return timeOf(m_schedule.size() - 1) + kLoopPause;
    return Clock::time_point::max();
}

double SccPlayer::position(Clock::time_point now) const {
    return std::chrono::duration<double>(now - m_start).count() * m_speed;
}

}  // namespace zelvan
