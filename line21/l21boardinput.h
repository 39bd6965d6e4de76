#pragma once
// The rules of the timecode board window, without a window system: finding
// the boards and naming them, preparing the selected one for caption output,
// and on each turn of the capture loop moving its new caption bytes onto the
// ring. The caption memory and its decoder are shared with the serial decoder
// window. The Qt window frmL21USB binds its controls to this class; tests
// drive it over a scripted library on virtual time.
//
// Of all board kinds only kind 4, the PCI family, delivers captions; the
// others can be listed and selected, and stay silent.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/inputfilter.h"
#include "core/tavo.h"
#include "line21/l21window.h"
#include "platform/boardlibrary.h"

namespace zelvan {

inline constexpr const char* kL21USBTitle = "Input: Line-21 USB";
inline constexpr const char* kNoBoardEntry = "No Board Currently Selected";

namespace board {

// What addBoard names each kind by. Kinds 3 and 4 read their name from the
// board; a kind the table doesn't hold adds no entry.
struct KindName {
    std::uint8_t kind;
    const char* name;  // null: read from the board
};
inline constexpr KindName kKindNames[] = {
    {1, "PC-LTC/IOR at "},
    {2, "PC-LTC/MMR at "},
    {3, nullptr},
    {4, nullptr},
};

// Family codes of a kind 3 board, register 0x3EF.
struct PcFamily {
    std::uint8_t code;
    const char* prefix;
};
inline constexpr PcFamily kPcFamilies[] = {
    {0x98, "PC-LTC/"},
    {0x93, "PC-VITC/"},
    {0x50, "PC-VLTC/"},
};

// Models of a kind 4 board, high four bits of register 0x08.
struct PciModel {
    std::uint8_t code;
    const char* prefix;
    const char* chars;  // c1 c2 c3
};
inline constexpr PciModel kPciModels[] = {
    {0b0001, "PCI-LTC/", "RDR"},  {0b0010, "PCI-LTC/", "GEN"},  {0b0011, "PCI-LTC/", "RG1"},
    {0b0100, "PCI-VITC/", "RDR"}, {0b0101, "PCI-VLTC/", "RDR"}, {0b0111, "PCI-VLTC/", "RG2"},
    {0b1000, "PCI-VITC/", "GEN"}, {0b1010, "PCI-VLTC/", "GeN"},  // lower-case e, as the board says
    {0b1100, "PCI-VITC/", "RG1"}, {0b1101, "PCI-VLTC/", "RG3"}, {0b1111, "PCI-VLTC/", "RG1"},
};

// A caption word as the board delivers it.
struct CaptionWord {
    std::uint8_t first;   // bits 6-0
    std::uint8_t second;  // bits 14-8
    std::uint8_t marker;  // bits 30-24
    bool valid;           // the marker is 0x40
};
CaptionWord unpackCaptionWord(std::uint32_t word);

}  // namespace board

// What the window shows: itself, the board list and the two memory panes.
class L21BoardView : public L21PanesView {
  public:
    virtual void placeWindow() = 0;
    // Modeless, owned by the main window.
    virtual void showWindow() = 0;
    virtual void hideWindow() = 0;
    // The list cboBrdLst: an entry added at the end, and the selection shown
    // without running the click.
    virtual void addBoardEntry(const std::string& text) = 0;
    virtual void showBoardSelection(int index) = 0;
};

class L21BoardInput : public L21Window {
  public:
    // The window's initialisation and load: blank memory, the boards found
    // and the selected one set up. The view's controls must exist by now.
    L21BoardInput(Tavo& tavo, InL21& memory, BoardLibrary& library, L21BoardView& view);

    // --- the filter contract ---
    void showForm() override;
    void hideForm() override;
    void readBoard() override;

    // --- the board ---
    void findBoards();
    void addBoard(BoardAddress address);
    void selectBoard(BoardAddress address);
    void initUSBL21();
    // At most 8 bytes: the caption bytes of up to four words.
    std::string readCaptionData(BoardAddress address);
    void USB_ReadAndQueueData();

    // --- the controls and events ---
    // The first activation starts capture and stays in it; later ones do nothing.
    void Form_Activate();
    void cmdStart_Click();
    void cboBrdLst_Click(int index);

    // The list cboBrdLst: text and item data of each entry.
    struct Entry {
        std::string text;
        BoardAddress data;
    };
    const std::vector<Entry>& entries() const { return m_entries; }
    int selectedEntry() const { return m_selected; }

    BoardAddress boardAddress = 0;
    std::uint8_t boardKind = 0;
    std::string boardName;
    bool bFirstActivate = false;

    // The window's state as text, for tests and debugging.
    std::string dump() const;

  private:
    void addEntry(const std::string& text, BoardAddress data);
    void selectEntry(int index);
    void readPcModel(BoardAddress address);
    void readPciModel(BoardAddress address);
    void readModel(std::uint8_t kind, BoardAddress address);
    std::uint8_t read1(BoardRegister reg, BoardAddress address);
    std::uint32_t read4(BoardRegister reg, BoardAddress address);
    void write1(BoardRegister reg, std::uint8_t value, BoardAddress address);

    BoardLibrary& m_library;
    L21BoardView& m_view;
    std::vector<Entry> m_entries;
    int m_selected = -1;
};

}  // namespace zelvan
