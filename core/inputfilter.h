#pragma once
// The contract that every input filter window obeys. The capture loop hands
// each byte to the selected filter's entry; the display output reads the
// filter's 15 rows of 32 characters through its row readers.

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>

namespace zelvan {

// What a filter reports for one character.
enum Style : std::int16_t {
    kStyleNothing = 0,    // nothing finished; rows may have changed
    kStyleRows = 1,       // the rows as a whole changed (erased or flipped into view)
    kStyleLineEnded = 3,  // a line ended
};

// The filters, in the fixed order that the pipeline, the row readers and the
// selection handlers walk them.
enum class FilterKind { L21Serial, L21USB, Ascii, Key, TDS, L21Video };
inline constexpr FilterKind kFilterOrder[] = {FilterKind::L21Serial, FilterKind::L21USB,
                                              FilterKind::Ascii,     FilterKind::Key,
                                              FilterKind::TDS,       FilterKind::L21Video};
inline constexpr std::size_t kFilterCount = std::size(kFilterOrder);

class InputFilter {
  public:
    virtual ~InputFilter() = default;
    // Places and shows the window and brings the filter to where input can start.
    // May enter the capture loop and stay there until capture stops.
    virtual void showForm() = 0;
    // Ends what showForm started and hides the window.
    virtual void hideForm() = 0;
    // Shows the window again after the operator closed it; the filter has
    // gone on meanwhile. Windows that can't be closed have nothing to do.
    virtual void bringBack() {}
    // The filter entry (FilterL21, FilterAscii): one character in, a style out,
    // and a finished line or the empty string in outString.
    virtual std::int16_t filterEntry(const std::string& inString, std::string& outString) = 0;
    // Row i (1-15) without trailing blanks; anything else gives "".
    virtual std::string getExternalText(std::int16_t i) = 0;
    // Row i without leading and trailing blanks.
    virtual std::string getExternalTextTrimmed(std::int16_t i) = 0;
    // Called once a capture turn while this filter reads a board (USB_ReadAndQueueData).
    virtual void readBoard() {}
};

}  // namespace zelvan
