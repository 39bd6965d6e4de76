#pragma once
// What the three line-21 windows share, without a window system: the filter
// entry and row readers over the one caption memory, the two memory panes'
// contents, the test buttons, the channel list and the flush timer. The
// decoder box, timecode board and digital video windows each add their own
// source of bytes on top.

#include <cstdint>
#include <memory>
#include <string>

#include "core/inputfilter.h"
#include "core/tavo.h"
#include "line21/inl21.h"
#include "line21/l21view.h"

namespace zelvan {

inline constexpr int kFlushMs = 5000;
// The pair the flush timer queues: a CR of channel index 0.
inline constexpr std::uint8_t kFlushFirst = 0x14;
inline constexpr std::uint8_t kFlushSecond = 0x2D;

// Queues the flush pair where it fits on the ring, as a receive does; on a
// full ring this firing is skipped and the next one flushes.
inline void queueFlushPair(Tavo& tavo) {
    if (tavo.queueRoom() < 2) return;
    tavo.queueByte(kFlushFirst);
    tavo.queueByte(kFlushSecond);
}

// The memory panes rtbDM and rtbNM (15 lines of 32 characters) and the
// channel list, as each line-21 window shows them.
class L21PanesView {
  public:
    virtual ~L21PanesView() = default;
    virtual void setDMText(const std::string& text) = 0;
    virtual void setNMText(const std::string& text) = 0;
    // Shows the selection of lbChannel without running its click.
    virtual void showChannel(std::int16_t index) = 0;
};

class L21Window : public InputFilter, public L21View {
  public:
    // Each new window starts from blank memory.
    L21Window(Tavo& tavo, InL21& memory, L21PanesView& panes);
    ~L21Window() override;
    L21Window(const L21Window&) = delete;
    L21Window& operator=(const L21Window&) = delete;

    std::int16_t filterEntry(const std::string& inString, std::string& outString) override;
    std::string getExternalText(std::int16_t i) override;
    std::string getExternalTextTrimmed(std::int16_t i) override;

    // --- what the decoder asks of the window ---
    void cmdShowDM_Click() override;
    void cmdShowNM_Click() override;
    Timer& TimerFlushTimer() override { return *m_flushTimer; }

    // --- the test buttons, which change the memory only: the operator presses "Show" ---
    void cmdEDM_Click();
    void cmdENM_Click();
    void cmdFillDM_Click();
    void cmdFillNM_Click();
    void cmdFlip_Click();
    void cmdInit_Click();
    void lbChannel_Click(std::int16_t index);
    // Queues the CR pair; the timer runs it every 5 seconds once started.
    void TimerFlushTimer_Timer();

    InL21& memory() { return m_memory; }

  protected:
    // The decoder refreshes this window's panes and re-arms its timer from
    // now on, and the channel list starts at CC1.
    void attachToDecoder();
    // The flush timer stops and the decoder lets go of this window, so no CR
    // pair is queued for whatever filter comes next.
    void detachFromDecoder();
    bool flushTimerOn() const { return m_flushTimer->enabled(); }
    // "this", "other" or "none": whose panes the decoder refreshes.
    std::string viewOwner() const;

    Tavo& m_tavo;
    InL21& m_memory;

  private:
    L21PanesView& m_panes;
    std::unique_ptr<Timer> m_flushTimer;
};

// A line-21 window as the main window sees it: the filter contract, forwarded
// to the window's rules.
class L21FilterWindow : public InputFilter {
  public:
    void showForm() override { rules().showForm(); }
    void hideForm() override { rules().hideForm(); }
    std::int16_t filterEntry(const std::string& inString, std::string& outString) override {
        return rules().filterEntry(inString, outString);
    }
    std::string getExternalText(std::int16_t i) override { return rules().getExternalText(i); }
    std::string getExternalTextTrimmed(std::int16_t i) override {
        return rules().getExternalTextTrimmed(i);
    }
    void readBoard() override { rules().readBoard(); }

  protected:
    virtual L21Window& rules() = 0;
};

}  // namespace zelvan
