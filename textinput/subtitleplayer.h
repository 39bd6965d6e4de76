#pragma once
// Subtitle files on the sign: cues laid out to its width, and played on time.
//
// Fitting: each line of a cue is broken into rows of at most 32 columns at
// its last word break, as the keyboard input breaks a line; the cue's own
// line breaks stay. A cue with more rows than the display has in use goes
// out as consecutive pages of at most that many rows.
//
// Playing: a clock of file time runs from a monotonic clock (the dispatch's
// nowMs), never from summed timer intervals, so a long film doesn't drift.
// At every moment the sign shows the cues running then, the earlier on top,
// as many rows as are in use; a cue of several pages shows each for an equal
// part of its time. The one timer is only a wake-up on the logic thread: at
// each firing the state is worked out afresh from the clock.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/eventdispatch.h"
#include "textinput/captionscript.h"

namespace zelvan {

using Rows = std::vector<std::string>;

// The rows a caption (lines joined by CR LF) takes on a 32-column sign.
Rows fitToSign(std::string_view caption);
// Rows taken `rowsInUse` at a time (1 to 3); at least one page.
std::vector<Rows> pagesOf(const Rows& rows, int rowsInUse);

// "HH:MM:SS.t" of a file time in milliseconds (tenths cut, not rounded).
std::string clockText(long long ms);
// A file time typed by the operator: "HH:MM:SS", "MM:SS" or seconds, each
// with an optional fraction; empty is 0. Nothing for text that is no time.
std::optional<long long> parseFileTime(std::string_view text);
// Seconds with an optional sign and fraction, to the nearest 0.1 s; empty
// is 0. Nothing for text that is no number.
std::optional<long long> parseOffset(std::string_view text);

class SubtitlePlayer {
  public:
    // `rowsInUse` asks the display how many rows it uses now; `show` puts
    // rows on the sign (none: erase).
    SubtitlePlayer(EventDispatch& dispatch, std::function<int()> rowsInUse,
                   std::function<void(const Rows&)> show);
    ~SubtitlePlayer();

    // A new file: stopped at 0, offset 0; what the sign shows stays.
    void load(std::vector<script::Caption> cues);
    bool hasCues() const { return !m_cues.empty(); }

    void play();
    void pause();
    bool playing() const { return m_playing; }
    // The file time now.
    long long clockMs() const;
    // Where Play starts the clock; ignored while playing.
    void setStartAt(long long ms);
    // Added to every cue time; may change while playing.
    void setOffset(long long ms);

    // Moves the clock to the next cue's start, or to the start of the cue
    // before the one that started last (the first cue is the floor).
    void jumpToNextCue();
    void jumpToPreviousCue();
    // Blanks the sign until the next cue starts.
    void eraseUntilNextCue();
    // One-based number of the first cue that starts after the clock, or
    // count + 1 when none does.
    std::size_t nextCueNumber() const;

    // The clock, the state or the next cue moved; at least every 0.1 s
    // while playing.
    std::function<void()> onChange;

  private:
    long long startOf(const script::Caption& cue) const { return cue.startMs + m_offsetMs; }
    long long endOf(const script::Caption& cue) const { return cue.endMs + m_offsetMs; }
    void moveClockTo(long long ms);
    Rows rowsAt(long long t, int rowsInUse) const;
    long long nextChangeAfter(long long t, int rowsInUse) const;
    void update();

    EventDispatch& m_dispatch;
    std::function<int()> m_rowsInUse;
    std::function<void(const Rows&)> m_show;
    std::unique_ptr<Timer> m_timer;
    std::vector<script::Caption> m_cues;  // in order of start
    std::vector<Rows> m_fitted;           // the rows of each cue
    bool m_playing = false;
    long long m_fileAtAnchor = 0;  // file time at m_nowAtAnchor
    long long m_nowAtAnchor = 0;
    long long m_offsetMs = 0;
    long long m_erasedUntil = -1;
    std::optional<Rows> m_shown;  // what this player put on the sign last
};

}  // namespace zelvan
