// The web mirror's feed: the tap's bytes, the sign model and the messages.

#include "display/mirror/mirrorfeed.h"

#include "display/protocol.h"
#include "platform/codepage.h"

namespace zelvan {

namespace {

constexpr char32_t kMusicNote = 0x266A;
// The sign draws a hollow box for a byte its font lacks; so does the mirror.
constexpr char32_t kMissingGlyph = 0x25A1;

char32_t readerCharacter(unsigned char b) {
    if (b == static_cast<unsigned char>(kSignMusicNote)) return kMusicNote;
    const char32_t c = codepage::toUnicode(b);
    return c < 0x20 || (c >= 0x80 && c < 0xA0) ? kMissingGlyph : c;
}

std::string readerRow(const SignModel& sign, int r) {
    std::string text = sign.rowThroughReflector(r);
    text.erase(text.find_last_not_of(' ') + 1);
    std::string utf8;
    for (unsigned char b : text) codepage::appendUtf8(utf8, readerCharacter(b));
    return utf8;
}

// Rows hold no control characters by now: only the quote and the backslash
// need escaping.
std::string jsonString(const std::string& utf8) {
    std::string out = "\"";
    for (char c : utf8) {
        if (c == '"' || c == '\\') out += '\\';
        out += c;
    }
    return out + '"';
}

}  // namespace

ReaderView readerView(const SignModel& sign) {
    ReaderView view;
    for (int r = 1; r <= kSignRows; ++r)
        view.rows[static_cast<std::size_t>(r - 1)] = readerRow(sign, r);
    view.bright = sign.bright;
    return view;
}

std::string mirrorMessage(long long seq, const ReaderView& view) {
    std::string rows;
    for (const std::string& row : view.rows) rows += (rows.empty() ? "" : ", ") + jsonString(row);
    return "{\"seq\": " + std::to_string(seq) + ", \"rows\": [" + rows +
           "], \"bright\": " + (view.bright ? "true" : "false") + "}";
}

MirrorFeed::MirrorFeed(EventDispatch& dispatch, Publish publish)
    : m_publish(std::move(publish)),
      m_settle(dispatch.makeTimer([this] { takeIn(); })),
      m_view(readerView(m_sign)),
      m_current(mirrorMessage(m_seq, m_view)) {
    m_settle->setInterval(kSettleMs);
}

void MirrorFeed::written(const std::string& bytes) {
    m_pending += bytes;
    if (!m_pending.empty() && !m_settle->enabled()) m_settle->setEnabled(true);
}

void MirrorFeed::takeIn() {
    m_settle->setEnabled(false);
    m_sign.feed(m_pending);
    m_pending.clear();
    ReaderView view = readerView(m_sign);
    if (view == m_view) return;
    m_view = std::move(view);
    m_current = mirrorMessage(++m_seq, m_view);
    m_publish(m_current);
}

}  // namespace zelvan
