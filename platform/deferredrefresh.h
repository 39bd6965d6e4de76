#pragma once
// Widgets that follow the pipeline take their new state a moment after the
// change, all together, at most a few times a second. The drain that follows
// a burst of input sends its frames first; a burst of changes costs one layout
// and one paint, not one per byte; and back-to-back captions meet a repaint
// only now and then.

#include <functional>

namespace zelvan {

class RefreshSchedule;

class DeferredRefresh {
  public:
    // Long enough that a turn ended early by a null byte drains the rest of
    // its caption before any widget is touched.
    static constexpr int kDelayMs = 2;
    // Ten updates a second is as fast as an operator reads a pane.
    static constexpr int kIntervalMs = 100;

    explicit DeferredRefresh(std::function<void()> apply);
    ~DeferredRefresh();
    DeferredRefresh(const DeferredRefresh&) = delete;
    DeferredRefresh& operator=(const DeferredRefresh&) = delete;

    // The widget is to be brought up to date at the next refresh.
    void request();
    // Brings it up to date at once: for reading the widget back.
    void flush();

  private:
    friend class RefreshSchedule;
    std::function<void()> m_apply;
};

}  // namespace zelvan
