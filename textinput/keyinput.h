#pragma once
// The rules of the keyboard input window, without a window system: the input
// line, the wrap of a line that reaches the wrap width, the send of a line as
// one CR on the capture ring, and the notice with its timer. The Qt window
// frmInKey binds its controls to this class and forwards the filter contract
// to it; tests drive it with a fake view on virtual time.
//
// The text of a line never goes through the ring: only a CR does. When the CR
// comes out of the ring, the filter fetches the input line into row 1, where
// the display output reads it.

#include <cstdint>
#include <deque>
#include <memory>
#include <string>

#include "core/inputfilter.h"
#include "core/tavo.h"
#include "textinput/textrows.h"

namespace zelvan {

inline constexpr const char* kKeyTitle = "Input: Ascii (Keyboard)";
inline constexpr const char* kBetterTypeFast = "Better Type Fast!!";
inline constexpr int kNotifyMs = 5000;
// The code of a key that has no character in the code page.
inline constexpr std::int16_t kNoCharacter = -1;

// What the logic needs of the window: the input line, the width box and the
// notice label.
class KeyView {
  public:
    virtual ~KeyView() = default;
    // Left edge at the main window's left edge, top at its height.
    virtual void placeWindow() = 0;
    // Modeless, owned by the main window.
    virtual void showWindow() = 0;
    virtual void hideWindow() = 0;
    // tbInput's text, in the code page.
    virtual std::string inputText() const = 0;
    // Replaces tbInput's text and puts the caret behind it.
    virtual void setInputText(const std::string& text) = 0;
    // Writes tbWrapWidth; the window's change handler then sets the width.
    virtual void setWrapWidthText(const std::string& text) = 0;
    // lblNotify: shown with the text, or hidden.
    virtual void showNotify(bool visible, const std::string& text) = 0;
};

class KeyInput : public InputFilter {
  public:
    KeyInput(Tavo& tavo, KeyView& view);

    // --- the filter contract ---
    // Shows the window, gives the notice and stays in the capture loop until
    // capture stops.
    void showForm() override;
    // Only hides the window: capture goes on, serving the next filter.
    void hideForm() override;
    std::int16_t filterEntry(const std::string& inString, std::string& outString) override {
        return FilterAscii(inString, outString);
    }
    std::string getExternalText(std::int16_t i) override { return rows.getExternalText(i); }
    std::string getExternalTextTrimmed(std::int16_t i) override {
        return rows.getExternalTextTrimmed(i);
    }

    std::int16_t FilterAscii(const std::string& inString, std::string& outString);

    // --- the controls ---
    // A key typed into tbInput, by its code in the code page (kNoCharacter
    // for one outside it). True when the key is consumed: it doesn't reach
    // the box.
    bool tbInput_KeyPress(std::int16_t KeyAscii);
    // The text of tbWrapWidth changed.
    void tbWrapWidth_Change(const std::string& text);
    // "Send It" sends the line just as Enter does.
    void cmdSend_Click();
    void notify(bool bShow, const std::string& sText);
    std::int16_t findWrapPoint(const std::string& sLine) const {
        return zelvan::findWrapPoint(sLine, iWrapWidth);
    }

    Timer& timerNotify() { return *m_timerNotify; }
    // The filter's state as text, for tests and debugging.
    std::string dump() const;

    TextRows rows;
    std::int16_t iWrapWidth = kDefaultWrapWidth;
    // A printable byte left on the ring by the input in use before, found
    // with the row full: it starts the input line after the next CR.
    std::string sCarry;
    bool bCarry = false;

  private:
    void sendLine(std::string next = std::string());
    std::string wrap(std::string& sLine, char k) const;
    void storePrintable(char c);
    void takeLine(std::string& outString);
    void setDefaultWrapWidth();

    Tavo& m_tavo;
    KeyView& m_view;
    std::unique_ptr<Timer> m_timerNotify;
    // For each CR this window queued that the filter hasn't taken yet, the
    // text that goes on the input line when it is taken.
    std::deque<std::string> m_nextLines;
};

}  // namespace zelvan
