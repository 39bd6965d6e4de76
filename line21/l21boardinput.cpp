#include "line21/l21boardinput.h"

#include <algorithm>
#include <cstdio>

#include "line21/l21window.h"

namespace zelvan {

namespace {

// The setup sequence of initUSBL21.
constexpr std::uint32_t kSetupWord = 0x80808080u;
constexpr std::uint8_t kSetupCommands[] = {0x5A, 0x2F};
constexpr std::uint8_t kSetupRestoreBit = 0x40;
// A poll takes at most four words of two bytes.
constexpr int kPollBytes = 8;

std::string hexAddress(BoardAddress address) {
    char text[8];
    std::snprintf(text, sizeof text, "%X", address);
    return text;
}

// prefix, c1 c2 c3, " (rev. ", r1 r2, " )  at  "
std::string modelName(const char* prefix, const std::string& model, char r1, char r2) {
    return prefix + model + " (rev. " + r1 + r2 + " )  at  ";
}

}  // namespace

namespace board {

CaptionWord unpackCaptionWord(std::uint32_t word) {
    CaptionWord w{};
    w.first = static_cast<std::uint8_t>(word & 0x7F);
    w.second = static_cast<std::uint8_t>((word >> 8) & 0x7F);
    w.marker = static_cast<std::uint8_t>((word >> 24) & 0x7F);
    w.valid = w.marker == 0x40;
    return w;
}

}  // namespace board

L21BoardInput::L21BoardInput(Tavo& tavo, InL21& memory, BoardLibrary& library, L21BoardView& view)
    : L21Window(tavo, memory, view), m_library(library), m_view(view) {
    bFirstActivate = true;
    findBoards();
    std::string info(3, ' ');
    m_library.AEC_PCTC_GET_DLL_INFO(info);  // asked once, never used
    initUSBL21();
}

// The cursors of the ring stay as they stand: this filter doesn't reset them.
void L21BoardInput::showForm() {
    m_tavo.InputFilterType = 2;
    m_view.placeWindow();
    attachToDecoder();
    m_view.showWindow();
}

// Nothing goes to the board and nothing is saved; the board stays as it is.
void L21BoardInput::hideForm() {
    detachFromDecoder();
    m_tavo.bStopCapture = true;
    m_view.hideWindow();
}

// A poll may put up to 8 bytes on the ring. With less room than that the
// words stay in the board, which keeps them, until the reader has caught up:
// no register is touched, so none is taken.
void L21BoardInput::readBoard() {
    if (m_tavo.queueRoom() < kPollBytes) return;
    USB_ReadAndQueueData();
}

std::uint8_t L21BoardInput::read1(BoardRegister reg, BoardAddress address) {
    std::uint8_t data = 0;
    m_library.AEC_PCTC_READ_1BYTE(data, reg, address);
    return data;
}

std::uint32_t L21BoardInput::read4(BoardRegister reg, BoardAddress address) {
    std::uint32_t data = 0;
    m_library.AEC_PCTC_READ_4BYTES(data, reg, address);
    return data;
}

void L21BoardInput::write1(BoardRegister reg, std::uint8_t value, BoardAddress address) {
    m_library.AEC_PCTC_WRITE_1BYTE(value, reg, address);
}

void L21BoardInput::addEntry(const std::string& text, BoardAddress data) {
    m_entries.push_back({text, data});
    m_view.addBoardEntry(text);
}

// Selecting by code acts like a click on the entry.
void L21BoardInput::selectEntry(int index) {
    m_view.showBoardSelection(index);
    cboBrdLst_Click(index);
}

void L21BoardInput::findBoards() {
    addEntry(kNoBoardEntry, 0);
    selectEntry(0);
    for (BoardAddress address : kBoardAddresses)
        if (m_library.AEC_PCTC_CHECK_BOARD(address) != 0) addBoard(address);
    if (m_entries.size() > 1) selectEntry(1);
}

// Kinds 3 and 4 are named by what they say of themselves; a model the tables
// don't know leaves the name of the board read before.
void L21BoardInput::addBoard(BoardAddress address) {
    boardKind = m_library.AEC_PCTC_CHECK_BOARD(address);
    const auto* kind = std::find_if(std::begin(board::kKindNames), std::end(board::kKindNames),
                                    [&](const board::KindName& k) { return k.kind == boardKind; });
    if (kind == std::end(board::kKindNames)) return;
    std::string name = kind->name ? kind->name : "";
    if (!kind->name) {
        readModel(boardKind, address);
        name = boardName;
    }
    addEntry(name + hexAddress(address), address);
}

void L21BoardInput::readModel(std::uint8_t kind, BoardAddress address) {
    if (kind == 3) readPcModel(address);
    if (kind == 4) readPciModel(address);
}

void L21BoardInput::readPcModel(BoardAddress address) {
    std::string chars;
    for (BoardRegister r = 0; r < 5; ++r)
        chars +=
            static_cast<char>(read1(static_cast<BoardRegister>(board::kRegPcModel + r), address));
    const std::uint8_t code = read1(board::kRegPcFamily, address);
    for (const board::PcFamily& f : board::kPcFamilies)
        if (f.code == code) boardName = modelName(f.prefix, chars.substr(0, 3), chars[3], chars[4]);
}

void L21BoardInput::readPciModel(BoardAddress address) {
    const int code = read1(board::kRegModel, address) >> 4;
    const auto r1 = static_cast<char>(read1(board::kRegRevision, address));
    const auto r2 =
        static_cast<char>(read1(static_cast<BoardRegister>(board::kRegRevision + 1), address));
    for (const board::PciModel& m : board::kPciModels)
        if (m.code == code) boardName = modelName(m.prefix, m.chars, r1, r2);
}

// A click on the first entry changes nothing: the board in use stays.
void L21BoardInput::cboBrdLst_Click(int index) {
    m_selected = index;
    if (index < 0 || index >= static_cast<int>(m_entries.size())) return;
    const BoardAddress address = m_entries[static_cast<std::size_t>(index)].data;
    if (address == 0) return;
    selectBoard(address);
    boardAddress = address;
}

void L21BoardInput::selectBoard(BoardAddress address) {
    const std::uint8_t kind = m_library.AEC_PCTC_CHECK_BOARD(address);
    if (kind == 0) return;
    boardKind = kind;
    readModel(kind, address);
}

// Prepares a PCI board for caption output; what the values do inside the
// board is the board's business.
void L21BoardInput::initUSBL21() {
    if (boardKind != board::kPciKind) return;
    BoardAddress address = boardAddress;
    if (!(read1(board::kRegModel, address) & board::kSetupPending)) return;
    const std::uint8_t kept = read1(board::kRegSetup, address);
    write1(board::kRegSetup, 0, address);
    std::uint32_t word = kSetupWord;
    BoardRegister wordReg = board::kRegSetupWord;
    m_library.AEC_PCTC_WRITE_4BYTES(word, wordReg, address);
    std::uint8_t second = 0;
    for (std::uint8_t command : kSetupCommands)
        m_library.AEC_PCTC_SEND_COMMAND(command, second, address);
    write1(board::kRegSetup, static_cast<std::uint8_t>(kept | kSetupRestoreBit), address);
}

// Register 0x50 has no zero-pair test, so a zero pair there gives two null
// bytes. The yield after each word lets pending events run mid-read: a flush
// timer's pair then goes onto the ring ahead of these bytes, which wait here.
std::string L21BoardInput::readCaptionData(BoardAddress address) {
    std::string s;
    if (boardKind != board::kPciKind) return s;
    if (!(read1(board::kRegStatus, address) & board::kDataWaiting)) return s;
    if (read1(board::kRegFormat, address) == board::kFormatCaptions) {
        for (BoardRegister reg : board::kWordRegs) {
            const std::uint32_t word = read4(reg, address);
            if (!(word & 0x80000000u)) continue;
            if (reg != board::kWordRegs[0] && (word & 0x7F7F) == 0) continue;
            const board::CaptionWord w = board::unpackCaptionWord(word);
            if (!w.valid) continue;
            s += static_cast<char>(w.first);
            s += static_cast<char>(w.second);
            m_tavo.dispatch().yield();
        }
    }
    write1(board::kRegTake, 0, address);
    return s;
}

void L21BoardInput::USB_ReadAndQueueData() {
    for (unsigned char c : readCaptionData(boardAddress)) m_tavo.queueByte(c);
}

void L21BoardInput::Form_Activate() {
    if (!bFirstActivate) return;
    bFirstActivate = false;
    cmdStart_Click();
}

void L21BoardInput::cmdStart_Click() {
    m_tavo.captureLoop();
}

std::string L21BoardInput::dump() const {
    char head[64];
    std::snprintf(head, sizeof head, "L21USB: board=%X kind=%u", boardAddress, boardKind);
    std::string s = head;
    s += " name=\"" + boardName + "\" list=" + std::to_string(m_entries.size());
    s += " selected=" + std::to_string(m_selected);
    s += " channel=" + std::to_string(m_memory.iChannel);
    s += " flush=" + std::string(flushTimerOn() ? "on" : "off");
    return s + " first=" + (bFirstActivate ? "1" : "0");
}

}  // namespace zelvan
