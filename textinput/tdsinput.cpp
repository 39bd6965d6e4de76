#include "textinput/tdsinput.h"

#include <cstdio>
#include <memory>

#include "textinput/captionscript.h"

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

TdsInput::TdsInput(Tavo& tavo, TdsView& view) : m_tavo(tavo), m_view(view) {
    // Blanking the rows here also brings the cursor home.
    m_rows.bClearHomesCursor = true;
    m_filter.reset();
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
// "Displayed:" tells the truth.
void TdsInput::send() {
    if (!m_bFileLoaded) return;
    putOnRows(m_onDeck);
    toDisplay();
    setDisplayed(m_onDeck);
    nextCaption();
}

void TdsInput::erase() {
    clearRows();
    toDisplay();
    setDisplayed("");
}

// With caption k on deck the position is k + 1, so going back two puts
// caption k - 1 on deck; caption 1 is the floor. The sign is left blank.
void TdsInput::rewind() {
    if (m_captionList.empty()) return;
    erase();
    m_iNextCaption = m_iNextCaption > 2 ? m_iNextCaption - 2 : 1;
    nextCaption();
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
    m_captionList.clear();
    script::appendCaptions(*bytes, m_captionList);
    m_iNextCaption = 1;
    nextCaption();
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

// The caption at the position comes on deck, at most 15 lines of it: the
// rows have no room for more, and the pane says how many were left out. At
// the end of the script nothing comes on deck and the position stays.
void TdsInput::nextCaption() {
    m_onDeck.clear();
    m_onDeckPane.clear();
    clearRows();
    const auto count = static_cast<std::int32_t>(m_captionList.size());
    if (m_iNextCaption >= 1 && m_iNextCaption <= count) {
        std::vector<std::string> lines =
            captionLines(m_captionList[static_cast<std::size_t>(m_iNextCaption - 1)]);
        const std::size_t leftOut = lines.size() > kTextRowCount ? lines.size() - kTextRowCount : 0;
        lines.resize(lines.size() - leftOut);
        m_onDeck = joinLines(lines);
        m_onDeckPane = leftOut ? m_onDeck + std::string(kCrLf) + leftOutNote(leftOut) : m_onDeck;
        putOnRows(m_onDeck);
        ++m_iNextCaption;
    }
    m_view.setOnDeckText(m_onDeckPane);
    m_view.focusSend();
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

std::string TdsInput::dump() const {
    std::string s = "TDS: file=\"" + m_fileName + "\" loaded=" + (m_bFileLoaded ? "1" : "0");
    s += " captions=" + std::to_string(m_captionList.size());
    s += " next=" + std::to_string(m_iNextCaption);
    s += " ondeck=\"" + m_onDeck + "\" displayed=\"" + m_displayed + "\"";
    return s + " " + m_filter.dump();
}

}  // namespace zelvan
