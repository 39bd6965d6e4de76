#include "display/mirror/mirrorserver.h"

#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QFile>
#include <QHttpServerResponse>
#include <QTimer>
#include <QWebSocket>

namespace zelvan {

namespace {

constexpr const char* kPageResource = ":/mirror/mirror.html";
// The page may talk to this server only: no font, script or tracker elsewhere.
constexpr const char* kPagePolicy =
    "default-src 'none'; script-src 'unsafe-inline'; style-src 'unsafe-inline'; "
    "connect-src 'self'; img-src data:; base-uri 'none'; form-action 'none'";

// A thousand readers need a thousand sockets; a desktop session often starts
// with room for only a thousand files in all.
void makeRoomForSockets(int sockets) {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
    const rlim_t wanted = std::min<rlim_t>(limit.rlim_max, static_cast<rlim_t>(sockets) + 256);
    if (limit.rlim_cur >= wanted) return;
    limit.rlim_cur = wanted;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

QHttpServerResponse page() {
    static const QByteArray html = [] {
        QFile file(QString::fromLatin1(kPageResource));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }();
    QHttpServerResponse response("text/html; charset=utf-8", html);
    response.setHeader("Content-Security-Policy", kPagePolicy);
    response.setHeader("Cache-Control", "no-cache");
    response.setHeader("Referrer-Policy", "no-referrer");
    response.setHeader("X-Content-Type-Options", "nosniff");
    return response;
}

}  // namespace

// One reader over its WebSocket. The socket goes once it is disconnected.
class WebReader : public MirrorClient {
  public:
    explicit WebReader(QWebSocket* socket) : m_socket(socket) {}
    std::size_t queued() const override {
        return static_cast<std::size_t>(std::max<qint64>(0, m_socket->bytesToWrite()));
    }
    void send(const std::string& message) override {
        m_socket->sendTextMessage(
            QString::fromUtf8(message.data(), static_cast<qsizetype>(message.size())));
    }
    void drop() override { m_socket->abort(); }

  private:
    QWebSocket* m_socket;
};

void ConnectionGate::incomingConnection(qintptr descriptor) {
    auto* socket = open() < m_most ? new QTcpSocket : nullptr;
    if (!socket || !socket->setSocketDescriptor(descriptor)) {
        delete socket;
        ::close(static_cast<int>(descriptor));
        return;
    }
    m_sockets.emplace_back(socket);
    socket->setReadBufferSize(kLargestRequest);
    socket->setSocketOption(QAbstractSocket::SendBufferSizeSocketOption, kSystemSendBuffer);
    // A message is small: it leaves at once instead of waiting for company.
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(socket, &QTcpSocket::readyRead, this, [socket] {
        if (socket->bytesAvailable() >= kLargestRequest)
            QMetaObject::invokeMethod(socket, &QTcpSocket::abort, Qt::QueuedConnection);
    });
    QTimer::singleShot(kRequestBoundMs, this, [this, s = QPointer<QTcpSocket>(socket)] {
        if (s && !isKept(*s)) s->abort();
    });
    addPendingConnection(socket);
}

int ConnectionGate::open() {
    std::erase_if(m_sockets, [](const QPointer<QTcpSocket>& s) { return s.isNull(); });
    return static_cast<int>(m_sockets.size());
}

// Requests still open go with the gate; readers go with their WebSockets.
ConnectionGate::~ConnectionGate() {
    for (const QPointer<QTcpSocket>& s : m_sockets) {
        if (!s || isKept(*s)) continue;
        s->abort();
        s->deleteLater();
    }
}

bool ConnectionGate::isKept(const QTcpSocket& socket) const {
    return m_kept.count({socket.peerAddress().toString(), socket.peerPort()}) > 0;
}

void ConnectionGate::keep(const QHostAddress& address, quint16 port) {
    m_kept.insert({address.toString(), port});
}

void ConnectionGate::release(const QHostAddress& address, quint16 port) {
    m_kept.erase({address.toString(), port});
}

MirrorServer::MirrorServer(EventDispatch& dispatch, const MirrorSettings& settings)
    : m_settings(settings),
      m_gate(new ConnectionGate(settings.maxClients + kSpareConnections, this)),
      m_clients(static_cast<std::size_t>(settings.maxClients)),
      m_feed(dispatch, [this](const std::string& message) { m_clients.publish(message); }) {
    m_http.route("/", QHttpServerRequest::Method::Get, [] { return page(); });
    // The upgrade to a WebSocket goes ahead on a path that has a route; the
    // route itself answers nothing.
    m_http.route(kFeedPath, QHttpServerRequest::Method::Get, [](QHttpServerResponder&&) {});
    connect(&m_http, &QAbstractHttpServer::newWebSocketConnection, this, [this] { takeReaders(); });
    m_giveBack.setSingleShot(true);
    m_giveBack.setInterval(kGiveBackMs);
    connect(&m_giveBack, &QTimer::timeout, this, [this] { giveMemoryBack(); });
}

// Turning the mirror off ends every reader's connection.
MirrorServer::~MirrorServer() {
    for (const auto& [socket, reader] : m_readers) {
        socket->disconnect(this);
        socket->abort();
    }
}

bool MirrorServer::listen() {
    makeRoomForSockets(m_settings.maxClients + kSpareConnections);
    const QHostAddress address(QString::fromStdString(m_settings.address));
    if (address.isNull()) {
        m_error = "\"" + m_settings.address + "\" is not an address of this computer.";
        return false;
    }
    if (!m_gate->listen(address, m_settings.port)) {
        m_error = "Can't serve on " + m_settings.address + ":" + std::to_string(m_settings.port) +
                  ": " + m_gate->errorString().toStdString();
        return false;
    }
    m_http.bind(m_gate);
    return true;
}

std::uint16_t MirrorServer::port() const {
    return m_gate->serverPort();
}

void MirrorServer::takeReaders() {
    while (m_http.hasPendingWebSocketConnections()) admit(m_http.nextPendingWebSocketConnection());
}

void MirrorServer::admit(std::unique_ptr<QWebSocket> socket) {
    QWebSocket* ws = socket.release();
    connect(ws, &QWebSocket::disconnected, ws, &QObject::deleteLater);
    ws->setMaxAllowedIncomingFrameSize(kLargestIncoming);
    ws->setMaxAllowedIncomingMessageSize(kLargestIncoming);
    auto reader = std::make_unique<WebReader>(ws);
    if (!m_clients.admit(*reader, m_feed.current())) {
        refuse(ws, QWebSocketProtocol::CloseCodePolicyViolated, "Too many readers");
        return;
    }
    m_gate->keep(ws->peerAddress(), ws->peerPort());
    connect(ws, &QWebSocket::disconnected, this, [this, ws] { leave(ws); });
    m_readers.emplace(ws, std::move(reader));
    m_readerCount = m_clients.count();
}

// Closes with a reason the page can read; a peer that doesn't answer the
// close is cut off.
void MirrorServer::refuse(QWebSocket* socket, QWebSocketProtocol::CloseCode code,
                          const char* reason) {
    socket->close(code, QString::fromLatin1(reason));
    QTimer::singleShot(kCloseBoundMs, socket, &QWebSocket::abort);
}

void MirrorServer::leave(QWebSocket* socket) {
    const auto it = m_readers.find(socket);
    if (it == m_readers.end()) return;
    m_gate->release(socket->peerAddress(), socket->peerPort());
    m_clients.leave(*it->second);
    m_readers.erase(it);
    m_readerCount = m_clients.count();
    m_giveBack.start();
}

// A reader's buffers are freed in the middle of the heap, where the allocator
// keeps them for later; the phones of a venue leave at once, at the end of a
// showing, and the program would hold their memory all evening.
void MirrorServer::giveMemoryBack() {
    ::malloc_trim(0);
}

}  // namespace zelvan
