#pragma once
// The web mirror's view of the sign: it follows the same tap on the display
// link as the sign preview, and turns each change of the sign into the rows
// as the audience reads them in the reflector, as one JSON message for the
// phones: {"seq": N, "rows": ["...", "...", "..."], "bright": true}.
//
// The tap only appends: the model takes the bytes in a few milliseconds, so
// the sign's frames are all out, and on their way down the line, before any
// phone is served; a burst of frames (dim, erase, rows, bright) makes one
// message.

#include <array>
#include <functional>
#include <memory>
#include <string>

#include "display/signmodel.h"
#include "platform/eventdispatch.h"
#include "platform/seriallink.h"

namespace zelvan {

// The sign as a reader sees it: rows 1-3 in UTF-8, read through the reflector,
// trailing blanks dropped.
struct ReaderView {
    std::array<std::string, kSignRows> rows;
    bool bright = true;
    bool operator==(const ReaderView&) const = default;
};

ReaderView readerView(const SignModel& sign);
std::string mirrorMessage(long long seq, const ReaderView& view);

class MirrorFeed : public WriteTap {
  public:
    using Publish = std::function<void(const std::string& message)>;
    // Long enough for the frames of a caption, short beside a reader's eye.
    static constexpr int kSettleMs = 10;

    MirrorFeed(EventDispatch& dispatch, Publish publish);

    void written(const std::string& bytes) override;

    // The message of the sign as it stands: what a new reader gets first.
    const std::string& current() const { return m_current; }
    long long seq() const { return m_seq; }

  private:
    void takeIn();

    Publish m_publish;
    std::unique_ptr<Timer> m_settle;
    SignModel m_sign;
    std::string m_pending;
    ReaderView m_view;
    long long m_seq = 0;
    std::string m_current;
};

}  // namespace zelvan
