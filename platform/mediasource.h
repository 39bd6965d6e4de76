#pragma once
// A video file or stream as the digital video window sees it: something that
// opens a source, reads it on a thread of its own and reports what it found,
// on the program's one logic thread, in a later yield. Tests put a scripted
// source in its place.

#include <functional>
#include <string>

namespace zelvan {

struct MediaEvent {
    enum class Kind {
        Opened,       // text: the stream and codec that carry the captions
        CaptionData,  // data: cc_data triples of one picture or packet
        Position,     // the media has come this far, with no caption data
        Ended,        // the end of a file; with Loop it starts again after this
        Failed,       // text: why the source can't be opened; nothing follows
        Stalled,      // text: why a stream stopped; it is being reopened
        Resumed,      // the stream came back after a stall
    };
    Kind kind = Kind::Position;
    std::string text = {};
    std::string data = {};
    long long positionMs = 0;  // media time since the start of the source
};

struct MediaRequest {
    std::string source;  // a file path or a URL
    bool loop = false;   // a file starts again at its end
};

class MediaSource {
  public:
    using Listener = std::function<void(const MediaEvent&)>;
    virtual ~MediaSource() = default;
    // Starts reading; events reach onEvent until close.
    virtual void open(const MediaRequest& request, Listener onEvent) = 0;
    // Stops reading; no event reaches the listener after this returns.
    virtual void close() = 0;
    virtual void setLoop(bool loop) = 0;
};

// A network stream is read as it arrives; a file is played in real time.
inline bool isNetworkSource(const std::string& source) {
    const auto scheme = source.find("://");
    return scheme != std::string::npos && source.compare(0, 5, "file:") != 0;
}

}  // namespace zelvan
