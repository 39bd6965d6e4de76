#pragma once
// The media source of the program: FFmpeg's libraries open a file or a
// network stream and read it on a worker thread. A 608 caption track is read
// as packets, with no video decoding; otherwise the video is decoded, as
// cheaply as keeps its A/53 caption data, and each picture's caption data
// goes out. Events reach the logic thread through the event dispatch.
//
// A file plays in real time by its timestamps from the moment it opens, so
// the sign follows a player started alongside; a stream is read as it
// arrives, and one that stalls or drops is reopened with a growing pause.

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/eventdispatch.h"
#include "platform/mediasource.h"

namespace zelvan {

class MediaReader : public MediaSource {
  public:
    explicit MediaReader(EventDispatch& dispatch);
    ~MediaReader() override;
    MediaReader(const MediaReader&) = delete;
    MediaReader& operator=(const MediaReader&) = delete;

    void open(const MediaRequest& request, Listener onEvent) override;
    void close() override;
    void setLoop(bool loop) override { m_loop = loop; }

  private:
    class Session;

    EventDispatch& m_dispatch;
    std::atomic<bool> m_loop{false};
    // Shared with the events already posted, which run only while it is alive.
    std::shared_ptr<bool> m_alive;
    std::unique_ptr<Session> m_session;
    std::thread m_thread;
};

}  // namespace zelvan
