#include "textinput/tdsinput.h"

#include <algorithm>
#include <cstdio>
#include <memory>

namespace zelvan {

namespace {

constexpr std::string_view kCrLf = "\r\n";

std::vector<std::string> captionLines(const std::string& caption) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t at; (at = caption.find(kCrLf, start)) != std::string::npos;
         start = at + kCrLf.size())
        lines.push_back(caption.substr(start, at - start));
    lines.push_back(caption.substr(start));
    return lines;
}

std::string joinLines(const std::vector<std::string>& lines) {
    std::string joined;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i > 0) joined += kCrLf;
        joined += lines[i];
    }
    return joined;
}

std::string leftOutNote(std::size_t count) {
    return "(" + std::to_string(count) + (count == 1 ? " line" : " lines") + " left out)";
}

// The whole file, or nothing when it can't be opened or read (a folder, a
// file without read permission, one that vanished).
std::optional<std::string> readWholeFile(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> f(std::fopen(path.c_str(), "rb"),
                                                            &std::fclose);
    if (!f) return std::nullopt;
    std::string bytes;
    char buf[65536];
    for (std::size_t n; (n = std::fread(buf, 1, sizeof buf, f.get())) > 0;) bytes.append(buf, n);
    if (std::ferror(f.get())) return std::nullopt;
    return bytes;
}

std::string baseName(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace

TdsInput::TdsInput(Tavo& tavo, TdsView& view)
    : m_tavo(tavo),
      m_view(view),
      m_player(
          tavo.dispatch(), [this] { return rowsInUse(); },
          [this](const Rows& rows) { showPlayed(rows); }) {
    // Blanking the rows here also brings the cursor home.
    m_rows.bClearHomesCursor = true;
    m_player.onChange = [this] { playerMoved(); };
}

void TdsInput::showForm() {
    m_view.placeWindow();
    m_view.setOffsetText(kTdsDefaultOffset);
    m_view.showWindow();
}

void TdsInput::hideForm() {
    m_view.hideWindow();
}

std::int16_t TdsInput::filterEntry(const std::string& inString, std::string& outString) {
    return m_filter.FilterAscii(inString, outString);
}

std::string TdsInput::getExternalText(std::int16_t i) {
    return m_rows.getExternalText(i);
}

std::string TdsInput::getExternalTextTrimmed(std::int16_t i) {
    return m_rows.getExternalTextTrimmed(i);
}

// The rows are filled again from the caption on deck before they go out.
// They hold it already, unless Erase blanked them or bytes left on the ring
// wrote into them; either way the sign then shows what "On Deck:" showed, and
// "Displayed:" tells the truth. A subtitle cue goes out as many rows at a
// time as the display uses now; while a file plays, Send moves to the next cue.
void TdsInput::send() {
    if (m_player.playing()) return m_player.jumpToNextCue();
    if (!m_bFileLoaded) return;
    if (m_script.timed() && !m_onDeck.empty()) {
        std::vector<std::string> rows = captionLines(m_onDeck);
        rows.insert(rows.end(), m_cueRest.begin(), m_cueRest.end());
        putOnDeck(std::move(rows));
    }
    putOnRows(m_onDeck);
    toDisplay();
    setDisplayed(m_onDeck);
    if (m_cueRest.empty())
        nextCaption();
    else
        putOnDeck(std::move(m_cueRest));
    m_view.focusSend();
}

void TdsInput::erase() {
    if (m_player.playing()) return m_player.eraseUntilNextCue();
    clearRows();
    toDisplay();
    setDisplayed("");
}

// With caption k on deck the position is k + 1, so going back two puts
// caption k - 1 on deck; caption 1 is the floor. The sign is left blank.
void TdsInput::rewind() {
    if (m_player.playing()) return m_player.jumpToPreviousCue();
    if (m_script.captions.empty()) return;
    erase();
    m_iNextCaption = m_iNextCaption > 2 ? m_iNextCaption - 2 : 1;
    nextCaption();
    m_view.focusSend();
}

void TdsInput::playPause() {
    m_followedCue = 0;
    if (m_player.playing())
        m_player.pause();
    else
        m_player.play();
}

void TdsInput::startAtChanged(const std::string& text) {
    if (const std::optional<long long> ms = parseFileTime(text)) m_player.setStartAt(*ms);
    playerMoved();
}

void TdsInput::offsetChanged(const std::string& text) {
    if (const std::optional<long long> ms = parseOffset(text)) m_player.setOffset(*ms);
}

// Cancel changes nothing. A file that can't be read ends the action silently,
// after its name has already been taken; the script, the panes and the
// position stay as they were. Each file read starts a fresh script.
void TdsInput::openFile() {
    // The dialog starts at the file last chosen, whose name tbTDSFile shows.
    const std::optional<std::string> path =
        m_view.chooseFile(kTdsDialogTitle, m_sFilePath, kTdsFileFilter);
    if (!path || path->empty()) return;
    m_fileName = baseName(*path);
    m_sFilePath = *path;
    m_view.setFileName(m_fileName);
    const std::optional<std::string> bytes = readWholeFile(m_sFilePath);
    if (!bytes) return;
    m_bFileLoaded = true;
    m_script = script::readScript(*bytes);
    m_player.load(m_script.timed() ? m_script.captions : std::vector<script::Caption>());
    m_view.setPlaybackBoxes("", "");
    m_iNextCaption = 1;
    nextCaption();
    playerMoved();
    m_view.focusSend();
}

void TdsInput::keyDown(int keyCode) {
    switch (keyCode) {
        case kKeyPageDown:
            send();
            break;
        case kKeyPageUp:
            rewind();
            break;
        case kKeyE:
            erase();
            break;
        case kKeyF1:
            m_view.showHelp();
            break;
        default:
            break;
    }
}

void TdsInput::clearRows() {
    m_rows.clearRows();
}

void TdsInput::addRow(const std::string& line) {
    m_rows.setRow(m_rows.iCurRow, line);
    ++m_rows.iCurRow;
}

// The caption at the position comes on deck; at the end of the script
// nothing does and the position stays.
void TdsInput::nextCaption() {
    std::vector<std::string> lines;
    const auto count = static_cast<std::int32_t>(m_script.captions.size());
    if (m_iNextCaption >= 1 && m_iNextCaption <= count) {
        const std::string& text =
            m_script.captions[static_cast<std::size_t>(m_iNextCaption - 1)].text;
        lines = m_script.timed() ? fitToSign(text) : captionLines(text);
        ++m_iNextCaption;
    }
    putOnDeck(std::move(lines));
}

// A subtitle cue comes on deck as many rows as the display uses, the rest
// waiting for the next Send. A script caption takes at most the 15 rows: the
// rest is left out, and the pane says how many lines were.
void TdsInput::putOnDeck(std::vector<std::string> lines) {
    const std::size_t room =
        m_script.timed() ? static_cast<std::size_t>(rowsInUse()) : kTextRowCount;
    const std::size_t extra = lines.size() - std::min(lines.size(), room);
    m_cueRest.assign(lines.end() - static_cast<long>(extra), lines.end());
    lines.resize(lines.size() - extra);
    m_onDeck = joinLines(lines);
    m_onDeckPane = m_onDeck;
    if (!m_script.timed() && extra) {
        m_onDeckPane += std::string(kCrLf) + leftOutNote(extra);
        m_cueRest.clear();
    }
    putOnRows(m_onDeck);
    m_view.setOnDeckText(m_onDeckPane);
}

void TdsInput::putOnRows(const std::string& caption) {
    clearRows();
    if (caption.empty()) return;
    for (const std::string& line : captionLines(caption)) addRow(line);
}

// Only while the display output is up; the panes and the position move all
// the same.
void TdsInput::toDisplay() {
    if (m_tavo.bOutDW && m_tavo.frmOutDW) m_tavo.frmOutDW->doInput(kStyleRows, std::string());
}

void TdsInput::setDisplayed(const std::string& text) {
    m_displayed = text;
    m_view.setDisplayedText(text);
}

// The display window's setting; with the display down, the sign's three.
int TdsInput::rowsInUse() const {
    const bool up = m_tavo.bOutDW && m_tavo.frmOutDW;
    return std::clamp<int>(up ? m_tavo.frmOutDW->rowsInUse() : 3, 1, 3);
}

// What the player shows goes out as a Send would send it.
void TdsInput::showPlayed(const Rows& rows) {
    clearRows();
    for (const std::string& row : rows) addRow(row);
    toDisplay();
    setDisplayed(joinLines(rows));
}

// While the file plays, "On Deck:" shows the cue that starts next, and the
// position follows it, so that stepping by hand after Pause goes on from there.
void TdsInput::playerMoved() {
    m_view.setClockText(clockText(m_player.clockMs()));
    m_view.showPlayState(m_player.hasCues(), m_player.playing());
    const auto next = static_cast<std::int32_t>(m_player.nextCueNumber());
    if (!m_player.playing() || next == m_followedCue) return;
    m_followedCue = next;
    m_iNextCaption = next;
    nextCaption();
}

std::string TdsInput::dump() const {
    std::string s = "TDS: file=\"" + m_fileName + "\" loaded=" + (m_bFileLoaded ? "1" : "0");
    s += " captions=" + std::to_string(m_script.captions.size());
    s += " next=" + std::to_string(m_iNextCaption);
    s += " ondeck=\"" + m_onDeck + "\" displayed=\"" + m_displayed + "\"";
    return s + " " + m_filter.dump();
}

}  // namespace zelvan
