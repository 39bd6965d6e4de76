#pragma once
// The serial port component: one per serial window. Its five link settings are
// plain properties; opening, closing and the line itself belong to the
// implementation. No operation returns a result: whatever fails shows in
// openState, and the events below arrive later, inside a yield of the event
// dispatch, never from inside the call that caused them.

#include <cstdint>
#include <functional>
#include <string>

namespace zelvan {

// Values as the settings sections hold them.
namespace parity {
inline constexpr std::int32_t kNone = 0, kOdd = 1, kEven = 2, kMark = 3, kSpace = 4;
}
namespace stopbits {
inline constexpr std::int32_t kOne = 0, kOneAndHalf = 1, kTwo = 2;
}

struct PortSettings {
    std::int32_t port = 1;
    std::int32_t baud = 9600;
    std::int32_t parity = parity::kNone;
    std::int32_t databits = 8;
    std::int32_t stopbits = stopbits::kOne;
    bool operator==(const PortSettings&) const = default;
};

// What a setup dialog shows and gives back: the line settings and the device
// entry behind the port number (empty: leave the map as it is).
struct PortSetup {
    PortSettings settings;
    std::string device;
    bool operator==(const PortSetup&) const = default;
};

class SerialPort {
  public:
    virtual ~SerialPort() = default;

    // --- the link settings; a change reaches an open port at once where the
    // implementation can apply it ---
    std::int32_t port() const { return m_settings.port; }
    std::int32_t baud() const { return m_settings.baud; }
    std::int32_t parity() const { return m_settings.parity; }
    std::int32_t databits() const { return m_settings.databits; }
    std::int32_t stopbits() const { return m_settings.stopbits; }
    void setPort(std::int32_t v) { change(&PortSettings::port, v); }
    void setBaud(std::int32_t v) { change(&PortSettings::baud, v); }
    void setParity(std::int32_t v) { change(&PortSettings::parity, v); }
    void setDatabits(std::int32_t v) { change(&PortSettings::databits, v); }
    void setStopbits(std::int32_t v) { change(&PortSettings::stopbits, v); }
    const PortSettings& settings() const { return m_settings; }

    // --- state ---
    // 1 while open, 0 when closed.
    virtual std::int32_t openState() const = 0;
    // Bytes received and not yet read.
    virtual std::int32_t rxCount() const = 0;
    // Bytes written and not yet on the line.
    virtual std::int32_t txCount() const = 0;
    // 1: onReceive fires when bytes arrive; 0: it doesn't. Starts at 1. A
    // handler may leave bytes unread: when it took some, another event follows
    // in a later yield for the rest.
    void setRxThreshold(std::int32_t v);
    std::int32_t rxThreshold() const { return m_rxThreshold; }
    // On: onCarrier fires when carrier detect changes. Starts off.
    void setCdEvents(bool on);
    bool cdEvents() const { return m_cdEvents; }

    // --- operations ---
    virtual void open() = 0;
    virtual void close() = 0;
    // Discards received and unsent bytes.
    virtual void purgeBuffers() = 0;
    // The next received byte; 0 when nothing is waiting.
    virtual std::uint8_t readByte() = 0;
    // Queues the bytes for sending and returns at once; dropped on a closed port.
    virtual void write(const std::string& bytes) = 0;
    // Why the last open or close failed, or why the port was lost, in words an
    // operator can act on; empty when nothing failed.
    const std::string& lastError() const { return m_lastError; }
    // The device behind the port number, as it was opened or would be.
    virtual std::string deviceName() const = 0;

    // The properties and state as one line of text, for tests and debugging.
    std::string dump() const;

    // --- events ---
    std::function<void(std::int32_t newState)> onState;
    std::function<void()> onCarrier;
    std::function<void()> onReceive;
    // The device went away while open (an adapter pulled out): the port is
    // closed already and onState(0) follows. Fires once per loss.
    std::function<void()> onLost;

  protected:
    void setLastError(std::string reason) { m_lastError = std::move(reason); }
    // Lets an implementation apply a changed setting to an open port.
    virtual void settingsChanged() {}
    // Lets an implementation start or stop watching for carrier or receive.
    virtual void eventsChanged() {}

  private:
    void change(std::int32_t PortSettings::*field, std::int32_t v) {
        m_settings.*field = v;
        settingsChanged();
    }

    PortSettings m_settings;
    std::int32_t m_rxThreshold = 1;
    bool m_cdEvents = false;
    std::string m_lastError;
};

}  // namespace zelvan
