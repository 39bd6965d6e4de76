#pragma once
// What the caption memory and the decoder ask of the line-21 window in use:
// the refresh of its two memory panes and its flush timer. The serial and the
// timecode board windows implement it; with no window the decoder runs the
// same and skips these calls.

#include "platform/eventdispatch.h"

namespace zelvan {

class L21View {
  public:
    virtual ~L21View() = default;
    // Sets the pane rtbDM to memoryText(iDM).
    virtual void cmdShowDM_Click() = 0;
    // Sets the pane rtbNM to memoryText(iNM).
    virtual void cmdShowNM_Click() = 0;
    // The window's TimerFlushTimer, which queues a CR pair when it fires.
    virtual Timer& TimerFlushTimer() = 0;
};

}  // namespace zelvan
