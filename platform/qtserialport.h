#pragma once
// The serial port component over QSerialPort. The port number names a device
// through the settings section "Devices" (see devicemap.h). Every event is
// posted to the event dispatch, so handlers run in a yield of the program's
// one thread and never from inside QSerialPort's own signal handling.
//
// QSerialPort has no carrier event: while cdEvents is on and the port is
// open, the carrier pin is sampled every kCarrierPollMs.

#include <QObject>
#include <QSerialPort>
#include <QTimer>
#include <memory>

#include "platform/eventdispatch.h"
#include "platform/serialport.h"
#include "platform/settingsstore.h"

namespace zelvan {

class QtSerialPort : public QObject, public SerialPort {
  public:
    static constexpr int kCarrierPollMs = 50;
    // How soon bytes a receive handler left behind are offered again.
    static constexpr int kReceiveRetryMs = 2;

    QtSerialPort(EventDispatch& dispatch, SettingsStore& store);
    ~QtSerialPort() override;

    std::int32_t openState() const override { return m_serial.isOpen() ? 1 : 0; }
    std::int32_t rxCount() const override;
    // Bytes in QSerialPort's buffer and in the system's output queue.
    std::int32_t txCount() const override;
    void open() override;
    void close() override;
    void purgeBuffers() override;
    std::uint8_t readByte() override;
    void write(const std::string& bytes) override;
    std::string deviceName() const override;

  private:
    void settingsChanged() override;
    void eventsChanged() override;
    // Empty when the port took the settings, else why not.
    std::string applySettings();
    void post(std::function<void()> fn);
    void postState();
    void postReceive();
    void runReceive();
    void onError(QSerialPort::SerialPortError error);
    void lose();
    void pollCarrier();
    bool readCarrier(bool& on);
    std::string describeOpenFailure() const;

    EventDispatch& m_dispatch;
    SettingsStore& m_store;
    QSerialPort m_serial;
    QTimer m_carrierPoll;
    // Wakes a caller that waits for txCount to fall while the system's queue
    // drains, which gives no event of its own.
    mutable QTimer m_drainWake;
    std::string m_device;  // the device the port was opened on
    bool m_carrier = false;
    bool m_receivePosted = false;
    QTimer m_receiveRetry;
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};

}  // namespace zelvan
