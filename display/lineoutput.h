#pragma once
// The line output engine: at each byte the capture loop drains, it pulls the
// selected filter's rows, shows them as pending text and, when the filter's
// style and the mode say so, sends them to the sign. Plain mode rolls each
// ended line onto the bottom row and repaints the rows when they change as a
// whole; buffer mode collects roll-up lines and paints them as a block.
//
// The display window owns one engine and binds its controls to the public
// fields; the fields start as the window's defaults leave them, with the
// output stopped until the window starts it.

#include <array>
#include <cstdint>
#include <string>

#include "display/protocol.h"

namespace zelvan {

class Tavo;

// What the window shows of the engine: the pending rows, after every pull.
class LineOutputListener {
  public:
    virtual ~LineOutputListener() = default;
    virtual void pendingChanged(const std::string& text) = 0;
};

inline constexpr std::int16_t kFilterRows = 15;

class LineOutput : public DisplayProtocol {
  public:
    LineOutput(Tavo& tavo, DisplayLink& link);

    // The entry, for every non-null byte drained and for each step of a caption
    // file. theLine isn't used: the text comes from the filter's rows.
    void doInput(std::int16_t theStyle, const std::string& theLine);

    // The parts of doInput, in the order it runs them.
    void pullRows();
    void pullRowsAt(std::int16_t iRow);
    void showPending();
    void emitLines(std::int16_t theStyle);
    void sendCaption(std::int16_t theStyle);
    void paintLines();
    void rollLines();

    // "Buffer Rollup" ticked or unticked: either way the buffer starts over.
    void setBufferRollup(bool on);
    // Erases the sign and, if bDoIt or the preference says so, writes the
    // startup caption's lines to rows 1 onward, as they stand.
    void showStartupBarker(bool bDoIt);

    void setListener(LineOutputListener* listener) { m_listener = listener; }
    std::string dump() const;

    // Bound to the window's boxes; bReverse, bSunrise and iLines (1 to 3) come
    // from the frames below it.
    bool bListen = true;         // "Listen": off, doInput does nothing at all
    bool bFilterOn = false;      // "Start Filter": off, rows are pulled but nothing is sent
    bool bBufferRollup = false;  // "Buffer Rollup": set through setBufferRollup
    // The buffered rows, slots 1 to 3 (slot 0 is unused, so a slot's index is its row).
    std::array<std::string, kSignRows + 1> sLines;
    std::int16_t iLineCount = 0;
    std::int16_t iNextRow = 0;
    std::string tbPending;

  private:
    int slotsInUse() const;

    Tavo& m_tavo;
    LineOutputListener* m_listener = nullptr;
};

}  // namespace zelvan
