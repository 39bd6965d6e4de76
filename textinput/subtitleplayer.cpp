#include "textinput/subtitleplayer.h"

#include <algorithm>
#include <climits>
#include <cstdio>

#include "textinput/textrows.h"

namespace zelvan {

namespace {

constexpr std::string_view kCrLf = "\r\n";
// The longest the timer sleeps: the clock shows tenths, and a window-system
// timer of a long interval may fire a few percent off its time.
constexpr long long kWakeMs = 100;
constexpr long long kNever = LLONG_MAX;

std::string_view trimRight(std::string_view s) {
    while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
    return s;
}

std::string_view trimLeft(std::string_view s) {
    while (!s.empty() && s.front() == ' ') s.remove_prefix(1);
    return s;
}

// Where a line longer than the row breaks: at a blank just past the row, or
// else after the last character in the row that isn't a word character.
std::size_t breakAt(std::string_view line) {
    const auto width = static_cast<std::size_t>(kTextRowWidth);
    if (line[width] == ' ') return width;
    return static_cast<std::size_t>(findWrapPoint(line.substr(0, width), kTextRowWidth));
}

void fitLine(std::string_view line, Rows& rows) {
    line = trimLeft(line);
    while (line.size() > static_cast<std::size_t>(kTextRowWidth)) {
        const std::size_t cut = breakAt(line);
        rows.emplace_back(trimRight(line.substr(0, cut)));
        line = trimLeft(line.substr(cut));
    }
    if (!line.empty()) rows.emplace_back(line);
}

// The decimal number at the start of `s` with an optional fraction, in
// thousandths; how many characters it took (0: none).
std::size_t readDecimal(std::string_view s, long long& thousandths) {
    std::size_t i = 0;
    long long whole = 0;
    for (; i < s.size() && i < 9 && s[i] >= '0' && s[i] <= '9'; ++i)
        whole = whole * 10 + s[i] - '0';
    if (i == 0) return 0;
    thousandths = whole * 1000;
    if (i < s.size() && (s[i] == '.' || s[i] == ',')) {
        long long scale = 100;
        for (++i; i < s.size() && s[i] >= '0' && s[i] <= '9'; ++i, scale /= 10)
            thousandths += (s[i] - '0') * scale;
    }
    return i;
}

std::string_view trimmed(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
    return s;
}

}  // namespace

Rows fitToSign(std::string_view caption) {
    Rows rows;
    for (std::size_t start = 0;;) {
        const std::size_t at = caption.find(kCrLf, start);
        fitLine(caption.substr(start, at - start), rows);
        if (at == std::string_view::npos) break;
        start = at + kCrLf.size();
    }
    return rows;
}

std::vector<Rows> pagesOf(const Rows& rows, int rowsInUse) {
    const auto perPage = static_cast<std::size_t>(std::clamp(rowsInUse, 1, 3));
    std::vector<Rows> pages;
    for (std::size_t i = 0; i < rows.size(); i += perPage)
        pages.emplace_back(rows.begin() + static_cast<long>(i),
                           rows.begin() + static_cast<long>(std::min(rows.size(), i + perPage)));
    if (pages.empty()) pages.emplace_back();
    return pages;
}

std::string clockText(long long ms) {
    ms = std::max(ms, 0LL);
    char text[32];
    std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld.%lld", ms / 3600000, ms / 60000 % 60,
                  ms / 1000 % 60, ms / 100 % 10);
    return text;
}

std::optional<long long> parseFileTime(std::string_view text) {
    text = trimmed(text);
    if (text.empty()) return 0;
    long long total = 0;
    for (int part = 0; part < 3; ++part) {
        long long value = 0;
        const std::size_t n = readDecimal(text, value);
        if (n == 0) return std::nullopt;
        text.remove_prefix(n);
        if (text.empty()) return total + value;
        if (text.front() != ':' || value % 1000 != 0) return std::nullopt;  // a fraction ends it
        total = (total + value) * 60;
        text.remove_prefix(1);
    }
    return std::nullopt;
}

std::optional<long long> parseOffset(std::string_view text) {
    text = trimmed(text);
    if (text.empty()) return 0;
    const bool negative = text.front() == '-';
    if (negative || text.front() == '+') text.remove_prefix(1);
    long long thousandths = 0;
    if (readDecimal(text, thousandths) != text.size()) return std::nullopt;
    const long long tenths = (thousandths + 50) / 100;
    return (negative ? -tenths : tenths) * 100;
}

SubtitlePlayer::SubtitlePlayer(EventDispatch& dispatch, std::function<int()> rowsInUse,
                               std::function<void(const Rows&)> show)
    : m_dispatch(dispatch),
      m_rowsInUse(std::move(rowsInUse)),
      m_show(std::move(show)),
      m_timer(dispatch.makeTimer([this] { update(); })) {}

SubtitlePlayer::~SubtitlePlayer() = default;

void SubtitlePlayer::load(std::vector<script::Caption> cues) {
    pause();
    std::stable_sort(cues.begin(), cues.end(),
                     [](const auto& a, const auto& b) { return a.startMs < b.startMs; });
    m_cues = std::move(cues);
    m_fitted.clear();
    for (const script::Caption& cue : m_cues) m_fitted.push_back(fitToSign(cue.text));
    m_fileAtAnchor = 0;
    m_offsetMs = 0;
    m_erasedUntil = -1;
}

// Play sends what the file shows at the clock at once, whatever the sign
// showed before.
void SubtitlePlayer::play() {
    if (m_playing || m_cues.empty()) return;
    m_playing = true;
    m_nowAtAnchor = m_dispatch.nowMs();
    m_shown.reset();
    update();
}

void SubtitlePlayer::pause() {
    m_fileAtAnchor = clockMs();
    m_playing = false;
    m_timer->setEnabled(false);
    if (onChange) onChange();
}

long long SubtitlePlayer::clockMs() const {
    return m_playing ? m_fileAtAnchor + (m_dispatch.nowMs() - m_nowAtAnchor) : m_fileAtAnchor;
}

void SubtitlePlayer::setStartAt(long long ms) {
    if (!m_playing) m_fileAtAnchor = ms;
}

void SubtitlePlayer::setOffset(long long ms) {
    m_offsetMs = ms;
    update();
}

void SubtitlePlayer::jumpToNextCue() {
    const std::size_t next = nextCueNumber() - 1;
    if (next < m_cues.size()) moveClockTo(startOf(m_cues[next]));
}

void SubtitlePlayer::jumpToPreviousCue() {
    if (m_cues.empty()) return;
    const std::size_t next = nextCueNumber() - 1;  // the one that started last is next - 1
    moveClockTo(startOf(m_cues[next >= 2 ? next - 2 : 0]));
}

void SubtitlePlayer::eraseUntilNextCue() {
    const std::size_t next = nextCueNumber() - 1;
    m_erasedUntil = next < m_cues.size() ? startOf(m_cues[next]) : kNever;
    update();
}

std::size_t SubtitlePlayer::nextCueNumber() const {
    const long long t = clockMs();
    const auto next = std::find_if(m_cues.begin(), m_cues.end(),
                                   [&](const script::Caption& c) { return startOf(c) > t; });
    return static_cast<std::size_t>(next - m_cues.begin()) + 1;
}

void SubtitlePlayer::moveClockTo(long long ms) {
    m_fileAtAnchor = ms;
    m_nowAtAnchor = m_dispatch.nowMs();
    m_erasedUntil = -1;
    update();
}

// The running cues at file time t, the earlier on top, each at the page its
// share of the time has reached.
Rows SubtitlePlayer::rowsAt(long long t, int rowsInUse) const {
    Rows rows;
    if (t < m_erasedUntil) return rows;
    for (std::size_t i = 0; i < m_cues.size() && rows.size() < static_cast<std::size_t>(rowsInUse);
         ++i) {
        const long long start = startOf(m_cues[i]), end = endOf(m_cues[i]);
        if (t < start) break;
        if (t >= end) continue;
        const std::vector<Rows> pages = pagesOf(m_fitted[i], rowsInUse);
        const auto count = static_cast<long long>(pages.size());
        const Rows& page = pages[static_cast<std::size_t>((t - start) * count / (end - start))];
        rows.insert(rows.end(), page.begin(), page.end());
    }
    rows.resize(std::min(rows.size(), static_cast<std::size_t>(rowsInUse)));
    return rows;
}

// The first moment after t at which the rows may change: a cue's start, a
// page's turn, a cue's end or the end of an erase.
long long SubtitlePlayer::nextChangeAfter(long long t, int rowsInUse) const {
    long long next = m_erasedUntil > t ? m_erasedUntil : kNever;
    for (std::size_t i = 0; i < m_cues.size(); ++i) {
        const long long start = startOf(m_cues[i]), end = endOf(m_cues[i]);
        if (start > t) return std::min(next, start);
        if (end <= t) continue;
        const auto count = static_cast<long long>(pagesOf(m_fitted[i], rowsInUse).size());
        const long long page = (t - start) * count / (end - start) + 1;
        const long long turn = start + (page * (end - start) + count - 1) / count;
        next = std::min(next, page < count ? turn : end);
    }
    return next;
}

// Past the last change the file has ended: the clock stops there.
void SubtitlePlayer::update() {
    if (!m_playing) return;
    const long long t = clockMs();
    const int rowsInUse = std::clamp(m_rowsInUse(), 1, 3);
    Rows rows = rowsAt(t, rowsInUse);
    if (rows != m_shown) {
        m_shown = rows;
        m_show(rows);
    }
    const long long next = nextChangeAfter(t, rowsInUse);
    if (next == kNever) {
        pause();
        return;
    }
    m_timer->setInterval(static_cast<int>(std::clamp(next - t, 1LL, kWakeMs)));
    m_timer->setEnabled(true);
    if (onChange) onChange();
}

}  // namespace zelvan
