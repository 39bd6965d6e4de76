#pragma once
// The port component over a TCP connection, for a device entry tcp://HOST:PORT
// (the program connects: a serial server in front of a sign, an encoder's data
// port) or tcp-listen://ADDRESS:PORT (it listens on that address only and
// takes one peer at a time; a second is refused while one is connected).
// Baud, parity, data and stop bits don't apply to a socket: they are kept as
// set. A listener counts as open while it listens, before its first peer.
//
// A connection lost mid-show is told as a lost device once, and the port
// gets it back by itself: a client connects again after 0.5 s, then at
// intervals doubling up to 5 s; a listener takes the next peer. Its state
// event tells when it is back. Close ends that.

#include <QObject>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <memory>

#include "platform/devicemap.h"
#include "platform/eventdispatch.h"
#include "platform/serialport.h"

namespace zelvan {

class NetworkPort : public QObject, public SerialPort {
  public:
    // How long an open waits for a connection; input and timers go on meanwhile.
    static constexpr int kConnectBoundMs = 5000;
    static constexpr int kFirstRetryMs = 500;
    static constexpr int kLastRetryMs = 5000;

    // `device` is a TcpClient or a TcpListener; `entry` its text, for messages.
    NetworkPort(EventDispatch& dispatch, const Device& device, std::string entry);
    ~NetworkPort() override;

    std::int32_t openState() const override { return m_open ? 1 : 0; }
    std::int32_t rxCount() const override;
    // Bytes the socket holds that the system hasn't taken yet.
    std::int32_t txCount() const override;
    void open() override;
    void close() override;
    void purgeBuffers() override;
    std::uint8_t readByte() override;
    void write(const std::string& bytes) override;
    std::string deviceName() const override { return m_entry; }

  private:
    void eventsChanged() override;
    bool isClient() const { return std::holds_alternative<TcpClient>(m_device); }
    void openClient();
    void openListener();
    void connectToPeer();
    void takePeer();
    void usePeer(QTcpSocket* socket);
    void dropPeer();
    void onConnected();
    void onSocketError();
    void lose();
    void retryLater();
    void setOpen(bool open);
    void post(std::function<void()> fn);
    void runReceive();

    EventDispatch& m_dispatch;
    Device m_device;
    std::string m_entry;
    QTcpServer m_server;
    QPointer<QTcpSocket> m_peer;
    QTimer m_retry;
    QTimer m_receiveRetry;
    int m_retryMs = kFirstRetryMs;
    bool m_open = false;
    bool m_wanted = false;  // opened by the operator and not closed since
    std::string m_connectError;
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};

}  // namespace zelvan
