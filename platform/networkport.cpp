#include "platform/networkport.h"

#include <QHostAddress>
#include <algorithm>

#include "platform/qtext.h"

namespace zelvan {

NetworkPort::NetworkPort(EventDispatch& dispatch, const Device& device, std::string entry)
    : m_dispatch(dispatch), m_device(device), m_entry(std::move(entry)) {
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, [this] { connectToPeer(); });
    m_receiveRetry.setSingleShot(true);
    m_receiveRetry.setInterval(2);
    connect(&m_receiveRetry, &QTimer::timeout, this, [this] { runReceive(); });
    connect(&m_server, &QTcpServer::newConnection, this, [this] { takePeer(); });
}

NetworkPort::~NetworkPort() {
    *m_alive = false;
    m_wanted = false;
    dropPeer();
}

// Events run in a later yield, and never after the component is gone.
void NetworkPort::post(std::function<void()> fn) {
    m_dispatch.post([alive = std::weak_ptr<bool>(m_alive), fn = std::move(fn)] {
        if (auto a = alive.lock(); a && *a) fn();
    });
}

void NetworkPort::setOpen(bool open) {
    m_open = open;
    post([this, open] {
        if (onState) onState(open ? 1 : 0);
    });
}

void NetworkPort::open() {
    if (m_open) return;
    m_wanted = true;
    setLastError({});
    if (isClient())
        openClient();
    else
        openListener();
    if (m_open) return;
    m_wanted = false;
    m_retry.stop();
}

// The operator asked for the link now: the connection is tried at once and
// waited for, yielding, so the open's result shows in openState as a serial
// open's does.
void NetworkPort::openClient() {
    m_retry.stop();
    m_retryMs = kFirstRetryMs;
    connectToPeer();
    bool expired = false;
    auto bound = m_dispatch.makeTimer([&expired] { expired = true; });
    bound->setInterval(kConnectBoundMs);
    bound->setEnabled(true);
    while (!m_open && m_connectError.empty() && !expired) m_dispatch.yieldOrWait();
    if (m_open) return;
    dropPeer();
    const std::string waited = std::to_string(kConnectBoundMs / 1000);
    setLastError(m_entry + ": " +
                 (expired ? "no answer within " + waited + " seconds" : m_connectError) + ".");
}

void NetworkPort::openListener() {
    const auto& at = std::get<TcpListener>(m_device);
    if (!m_server.isListening() && !m_server.listen(QHostAddress(toQString(at.address)), at.port)) {
        setLastError(m_entry + ": " + fromQString(m_server.errorString()) + ".");
        return;
    }
    setOpen(true);
}

void NetworkPort::connectToPeer() {
    dropPeer();
    m_connectError.clear();
    const auto& to = std::get<TcpClient>(m_device);
    usePeer(new QTcpSocket(this));
    connect(m_peer, &QTcpSocket::connected, this, [this] { onConnected(); });
    m_peer->connectToHost(toQString(to.host), to.port);
}

// One peer at a time: while one is connected, a second is let in only to be
// shut out again at once.
void NetworkPort::takePeer() {
    while (QTcpSocket* socket = m_server.nextPendingConnection()) {
        if (m_peer || !m_wanted) {
            socket->abort();
            socket->deleteLater();
            continue;
        }
        usePeer(socket);
        if (!m_open) setOpen(true);
    }
}

void NetworkPort::usePeer(QTcpSocket* socket) {
    m_peer = socket;
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(socket, &QTcpSocket::readyRead, this, [this] { runReceive(); });
    connect(socket, &QTcpSocket::errorOccurred, this, [this] { onSocketError(); });
}

void NetworkPort::dropPeer() {
    if (!m_peer) return;
    QTcpSocket* socket = m_peer;
    m_peer = nullptr;
    socket->disconnect(this);
    socket->abort();
    socket->deleteLater();
}

void NetworkPort::onConnected() {
    m_retryMs = kFirstRetryMs;
    setLastError({});
    setOpen(true);
}

void NetworkPort::onSocketError() {
    if (!m_peer) return;
    const std::string reason = fromQString(m_peer->errorString());
    if (m_open) {
        setLastError(m_entry + ": " + reason);
        lose();
    } else {
        m_connectError = reason;
        retryLater();
    }
}

// Told once; a client then tries again by itself, a listener waits for the
// next peer.
void NetworkPort::lose() {
    dropPeer();
    setOpen(false);
    post([this] {
        if (onLost) onLost();
    });
    if (isClient()) retryLater();
}

// Only while the link is wanted and no open is waiting on the answer: the
// open's own wait reports a first failure.
void NetworkPort::retryLater() {
    if (!m_wanted || m_open || !isClient()) return;
    m_retry.start(m_retryMs);
    m_retryMs = std::min(m_retryMs * 2, kLastRetryMs);
}

void NetworkPort::close() {
    const bool wasOpen = m_open;
    m_wanted = false;
    m_retry.stop();
    if (m_peer) {
        // What is queued still goes out: the socket closes once it is written.
        QTcpSocket* socket = m_peer;
        m_peer = nullptr;
        socket->disconnect(this);
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        socket->disconnectFromHost();
    }
    m_server.close();
    setLastError({});
    if (wasOpen) setOpen(false);
}

void NetworkPort::purgeBuffers() {
    if (m_peer) m_peer->readAll();
}

std::int32_t NetworkPort::rxCount() const {
    return m_open && m_peer ? static_cast<std::int32_t>(m_peer->bytesAvailable()) : 0;
}

std::int32_t NetworkPort::txCount() const {
    return m_peer ? static_cast<std::int32_t>(m_peer->bytesToWrite()) : 0;
}

std::uint8_t NetworkPort::readByte() {
    char c = 0;
    if (!m_peer || !m_peer->getChar(&c)) return 0;
    return static_cast<std::uint8_t>(c);
}

// With no peer on a listener the bytes are dropped, as on a line with nothing
// at its far end.
void NetworkPort::write(const std::string& bytes) {
    if (!m_open || !m_peer || bytes.empty()) return;
    m_peer->write(bytes.data(), static_cast<qint64>(bytes.size()));
    m_peer->flush();
}

void NetworkPort::eventsChanged() {
    if (rxCount() >= 1) post([this] { runReceive(); });
}

// What the handler leaves is offered again a moment later, as on a serial line.
void NetworkPort::runReceive() {
    if (rxThreshold() < 1 || rxCount() < 1 || !onReceive) return;
    onReceive();
    if (rxCount() >= 1 && !m_receiveRetry.isActive()) m_receiveRetry.start();
}

}  // namespace zelvan
