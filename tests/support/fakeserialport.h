#pragma once
// A serial port for the logic tests on the test's event dispatch. Events are
// posted like the real component's, so they run in a later yield.

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "platform/eventdispatch.h"
#include "platform/serialport.h"

namespace zelvan {

class FakeSerialPort : public SerialPort {
  public:
    explicit FakeSerialPort(EventDispatch& dispatch);
    ~FakeSerialPort() override;

    std::int32_t openState() const override { return m_open ? 1 : 0; }
    std::int32_t rxCount() const override { return static_cast<std::int32_t>(m_rx.size()); }
    std::int32_t txCount() const override { return static_cast<std::int32_t>(m_tx.size()); }
    void open() override;
    void close() override;
    void purgeBuffers() override;
    std::uint8_t readByte() override;
    void write(const std::string& bytes) override;
    std::string deviceName() const override { return "/dev/fake0"; }

    // The next open (or close) fails and leaves the state as it was.
    void failNextOpen(std::string reason = "No such file or directory");
    void failNextClose(std::string reason = "Input/output error");
    // Bytes arrive from the line.
    void deliver(const std::string& bytes);
    // How written bytes leave: 0 = at once, n > 0 = one byte every n ms of the
    // dispatch's time, below 0 = never (a stalled line).
    void setDrainMsPerByte(int ms);
    void setCarrier(bool on);
    // The device goes away: the port closes, onLost and onState(0) follow.
    void vanish(std::string reason = "The device went away");

    std::string refusal;              // what the device refuses at each open
    std::vector<std::string> writes;  // each write call, on an open port
    std::string sent;                 // bytes that have left on the line
    int opens = 0, purges = 0;
    bool carrier = false;

  private:
    void post(std::function<void()> fn);
    void postState();
    void clearLine();
    void postReceive();
    void drainOne();
    void restartDrain();

    EventDispatch& m_dispatch;
    std::unique_ptr<Timer> m_drainTimer;
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
    bool m_open = false;
    bool m_failOpen = false, m_failClose = false;
    std::string m_failReason;
    std::deque<std::uint8_t> m_rx, m_tx;
    int m_drainMsPerByte = 0;
};

}  // namespace zelvan
