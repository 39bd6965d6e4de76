#pragma once
// The caption memory and the line-21 decoder: one instance for the whole
// program, shared by the serial and the timecode board filters.
//
// The memory models a caption decoder's screen: two banks of 15 rows of 32
// characters, one displayed (iDM) and one non-displayed (iNM). FilterL21 takes
// a raw seven-bit line-21 stream one byte a call, writes caption text into the
// banks and returns a style for the display output, which reads the displayed
// bank through the row readers. Rows, columns and banks count from 1.

#include <array>
#include <cstdint>
#include <string>

#include "line21/l21tables.h"
#include "line21/l21view.h"
#include "platform/settingsstore.h"

namespace zelvan {

class InL21 {
  public:
    using Row = std::array<char, line21::kCols>;
    struct MemBank {
        std::array<Row, line21::kRows> rowText;
        // Set when a row is written, cleared when it is erased; nothing reads it.
        std::array<bool, line21::kRows> rowUsed;
    };

    // Caption modes.
    static constexpr std::int16_t kPopOn = 1;
    static constexpr std::int16_t kPaintOn = 2;
    static constexpr std::int16_t kRollUp = 3;

    InL21();

    // --- caption memory ---
    // Resets both banks, their roles and the decoder; leaves iChannel alone.
    void initL21();
    void fillMemory(std::int16_t bank);
    void eraseDM();
    void eraseNM();
    // Swaps the roles of the banks (the text stays where it is) and refreshes the panes.
    void flipMemory();
    // The bank as 15 lines of 32 characters joined by CR LF: 508 characters.
    std::string memoryText(std::int16_t bank) const;
    // Row i (1-15) of the displayed bank without trailing blanks; other i give "".
    std::string getExternalTextL21(std::int16_t i) const;
    // The same without leading blanks either.
    std::string getExternalTextTrimmedL21(std::int16_t i) const;

    // --- the decoder ---
    // Decodes the first character of inString; returns the style (0, 1 or 3)
    // and puts the short text a code produced, or "", into outString.
    std::int16_t FilterL21(const std::string& inString, std::string& outString);
    // Re-arms the flush timer of the window in use for a full 5 seconds.
    void restartFlushTimer();

    // Row `row` of bank `bank` as a 32-character string (both from 1).
    std::string rowString(std::int16_t bank, std::int16_t row) const;
    // The whole state as text, for tests and debugging.
    std::string dump() const;

    // --- caption memory state ---
    std::array<MemBank, 2> memBank{};  // bank number n is memBank[n - 1]
    std::int16_t iDM = 1;
    std::int16_t iNM = 2;
    std::array<std::string, 2> fillPattern;  // of bank number n: fillPattern[n - 1]
    std::string musicNote;

    // --- decoder state, reset by initL21 ---
    std::int16_t iWriteBank = 2;
    std::int16_t iRow = 1;
    std::int16_t iCol = 1;
    std::int16_t iMode = kPopOn;
    bool bErasePending = false;
    bool bHaveFirst = false;
    bool bIgnoreText = false;
    bool bChannelActive = false;
    // The pair being assembled and the control pair seen last: 0 or 1 character each.
    std::string sFirst, sSecond, sPrevFirst, sPrevSecond;

    // The selected entry of the channel list (0 = CC1); set by the windows,
    // not by initL21.
    std::int16_t iChannel = 0;

    // Off: an EDM also sends the write position to row 1, column 1. On: it
    // leaves the position where it is, as broadcast decoders do; some
    // broadcasters send EDM while the next pop-on caption is loading. Kept in
    // the settings store (section "L21Decoder"), not reset by initL21.
    bool EdmKeepsPosition = false;
    void loadDecoderSettings(const SettingsStore& store);
    void saveDecoderSettings(SettingsStore& store) const;

    // The line-21 window in use, or null. The window whose filter is selected
    // sets it when it is shown and clears it when it is hidden; the decoder and
    // flipMemory refresh its panes, restartFlushTimer re-arms its timer.
    L21View* view = nullptr;

  private:
    // Results of one FilterL21 call, built up by the handlers.
    struct Outcome {
        std::int16_t style = 0;
        std::string line;
    };

    MemBank& bank(std::int16_t n) { return memBank[static_cast<std::size_t>(n - 1)]; }
    const MemBank& bank(std::int16_t n) const { return memBank[static_cast<std::size_t>(n - 1)]; }
    void eraseBank(std::int16_t n);
    void refreshPanes();

    // Byte assembly.
    void takeFirstByte(char c);
    void takeOtherByte();
    void takeTextByte(std::uint8_t c);
    void takeSecondByte(char c, Outcome& out);

    // Acting on a pair, one handler per kind of code.
    void actOnPair(std::uint8_t f, std::uint8_t s, Outcome& out);
    void rowCode(std::uint8_t f, std::uint8_t s, Outcome& out);
    void midRowCode(Outcome& out);
    void specialChar(std::uint8_t s, Outcome& out);
    void extendedChar(std::uint8_t f, std::uint8_t s, Outcome& out);
    void tabOffset(std::uint8_t s);
    void command(std::uint8_t f, std::uint8_t s, Outcome& out);
    bool passesChannelTest(std::uint8_t f);

    // The commands.
    void resumeCaptionLoading();
    void backspace();
    void rollUp();
    void resumeDirectCaptioning();
    void eraseDisplayedMemory(Outcome& out);
    void carriageReturn(std::uint8_t f, Outcome& out);
    void eraseNonDisplayedMemory();
    void endOfCaption(Outcome& out);

    void storeChar(std::uint8_t ch);
    void putChar(std::int16_t col, std::uint8_t ch);

    // Where the last character was put, so that an extended character can
    // find the fallback character it replaces.
    std::int16_t m_lastStoreBank = 0;
    std::int16_t m_lastStoreRow = 0;
    std::int16_t m_lastStoreCol = 0;
};

}  // namespace zelvan
