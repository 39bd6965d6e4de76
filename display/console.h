#pragma once
// The display console's rules, without a window: the mode boxes that steer the
// line output engine, the lines box and its scroll bar, the buttons that send
// frames or hand-made text, the carrier-detect board switch, and the order in
// which the window comes up and goes down.
//
// The console owns the engine and the display's serial link, and is the link
// the engine writes through. It holds the value of every box, so a change
// action runs only when a value really changes, whoever changed it: the
// operator, setDefaults or another action. The window binds its controls to
// the set... calls and shows what the ConsoleView calls tell it.

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "display/displaylink.h"
#include "display/lineoutput.h"
#include "platform/seriallink.h"

namespace zelvan {

inline constexpr const char* kCaptionStartFilter = "Start Filter";
inline constexpr const char* kCaptionStopFilter = "Stop Filter";
inline constexpr int kColourBlack = 0;
inline constexpr int kColourRed = 255;  // as the window system's colour value: red
inline constexpr const char* kToggleBoardNotice = "Toggle front/back";
// The carrier event switches the board at most about once in this time.
inline constexpr int kDebounceCDMs = 1000;
inline constexpr int kScrollLinesMin = 1;
inline constexpr int kScrollLinesMax = 3;

// The console's check boxes, each with its change action.
enum class ConsoleBox { RevOnCD, Input, Filter, Reverse, Rollup, Sunrise };
inline constexpr std::size_t kConsoleBoxes = 6;

// What the console writes back into the window's controls. Each call shows a
// value; none of them may call back into the console.
class ConsoleView {
  public:
    virtual ~ConsoleView() = default;
    virtual void showBox(ConsoleBox box, bool ticked) = 0;
    // chkFilter's caption and its colour value (0 black, 255 red).
    virtual void showFilterCaption(const std::string& caption, int colour) = 0;
    virtual void showScrollLines(int value) = 0;              // VScrollLines
    virtual void showLinesText(const std::string& text) = 0;  // tbScrollLines
    virtual void showPending(const std::string& text) = 0;    // tbPending
    // Top 0, left edge at the main window's right edge.
    virtual void placeWindow() = 0;
    // Modeless, owned by the main window.
    virtual void showWindow() = 0;
    virtual void hideWindow() = 0;
};

// The numeric value of a box's text as the lines box reads it: leading blanks,
// a sign, digits and a fraction, up to the first other character; no number
// reads as 0.
double numericValue(const std::string& text);

class DisplayConsole : public DisplayLink, private LineOutputListener {
  public:
    // The port must outlive the console. The link view and the console view
    // are called only after construction.
    DisplayConsole(Tavo& tavo, SerialPort& port, SerialLinkView& linkView, ConsoleView& view);
    ~DisplayConsole() override;
    DisplayConsole(const DisplayConsole&) = delete;
    DisplayConsole& operator=(const DisplayConsole&) = delete;

    // --- the window's life ---
    void formLoad();
    void showForm();
    void hideForm();
    void setDefaults();

    // --- the engine, as the pipeline and shutdown call it ---
    void doInput(std::int16_t theStyle, const std::string& theLine);
    void showStartupBarker(bool bDoIt) { m_engine.showStartupBarker(bDoIt); }
    void DWErase() { m_engine.DWErase(); }
    std::int16_t rowsInUse() const { return m_engine.iLines; }

    // --- the port controls ---
    void cmdPortOutOpen_Click();
    void cmdPortOutSetup_Click() { m_link.setup(); }
    void cmdPortOutDial_Click(const std::string& dialText) { m_link.dial(dialText); }
    void cmdPortOutHangup_Click() { m_link.hangUpPort(); }

    // --- the boxes: each runs its action when the value changes ---
    void setBox(ConsoleBox box, bool ticked);
    bool box(ConsoleBox box) const { return m_boxes[static_cast<std::size_t>(box)]; }
    void setScrollLines(int value);
    void setLinesText(const std::string& text);
    int scrollLines() const { return m_scrollLines; }
    const std::string& linesText() const { return m_linesText; }

    // --- the pending text and its buttons ---
    // The operator edited the box.
    void setPendingText(const std::string& text) { m_engine.tbPending = text; }
    const std::string& pendingText() const { return m_engine.tbPending; }
    void cmdSendIt_Click();
    void cmdSendAt_Click();
    void cmdFromReadable_Click(const std::string& clipboard);
    void cmdToReadable_Click(const std::string& clipboard);
    // Puts the escape character in place of the selection (byte offsets into
    // the pending text) and returns the offset just behind it, for the caret.
    std::size_t cmdLuckyCharm_Click(std::size_t selStart, std::size_t selLength);

    // --- the carrier-detect board switch ---
    void onCarrier();
    void timerDebounceCD_Timer();

    // --- the link the engine writes through ---
    bool isPortOpen() override { return m_link.isPortOpen(); }
    void write(const std::string& bytes) override { m_link.write(bytes); }
    void showNotice(bool on, const std::string& text) override { m_link.showNotice(on, text); }

    LineOutput& engine() { return m_engine; }
    SerialLink& link() { return m_link; }
    const Timer& debounceTimer() const { return *m_timerDebounceCD; }
    std::string dump() const;

  private:
    void pendingChanged(const std::string& text) override { m_view.showPending(text); }
    void chkRevOnCD_Click(bool ticked);
    void chkFilter_Click(bool ticked);
    void chkSunrise_Click(bool ticked);
    void VScrollLines_Change();
    void tbScrollLines_Change();
    bool& boxValue(ConsoleBox box) { return m_boxes[static_cast<std::size_t>(box)]; }

    Tavo& m_tavo;
    SerialPort& m_port;
    ConsoleView& m_view;
    SerialLink m_link;
    LineOutput m_engine;
    std::unique_ptr<Timer> m_timerDebounceCD;

    // The controls' values before setDefaults: boxes unticked, the scroll bar
    // at the bottom of its range, the lines box empty.
    std::array<bool, kConsoleBoxes> m_boxes{};
    int m_scrollLines = kScrollLinesMin;
    std::string m_linesText;
};

}  // namespace zelvan
