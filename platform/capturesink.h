#pragma once

#include <cstdint>

namespace zelvan {

class EventDispatch;
class SettingsStore;
class Tone;

// Where the bytes of a receiving link go: the program's capture ring, read by
// the capture loop.
class CaptureSink {
  public:
    virtual ~CaptureSink() = default;
    // Bytes the ring can still take before it would overwrite unread ones.
    virtual int queueRoom() const = 0;
    virtual void queueByte(std::uint8_t b) = 0;
    // Ends the capture loop: the port that fed it is gone.
    virtual void stopCapture() = 0;
    // Waits ms while bytes keep flowing into the ring.
    virtual void timedWait(std::int16_t ms) = 0;
};

// What a link uses of the program around it.
struct LinkContext {
    EventDispatch& dispatch;
    SettingsStore& store;
    CaptureSink& capture;
    Tone& tone;  // the two-tone beep of a notice
};

}  // namespace zelvan
