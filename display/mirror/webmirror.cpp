#include "display/mirror/webmirror.h"

#include <QHostAddress>
#include <QNetworkInterface>
#include <QThread>

#include "display/mirror/mirrorserver.h"

namespace zelvan {

namespace {

// For an address that means every network: the first address of this
// computer that a phone can reach.
QHostAddress reachableAddress(const QHostAddress& address) {
    if (address != QHostAddress::AnyIPv4 && address != QHostAddress::AnyIPv6 &&
        address != QHostAddress::Any)
        return address;
    for (const QHostAddress& a : QNetworkInterface::allAddresses())
        if (!a.isLoopback() && a.protocol() == QAbstractSocket::IPv4Protocol) return a;
    return QHostAddress::LocalHost;
}

}  // namespace

// The server on a thread of its own: its hundreds of sockets are watched
// there, so a turn of the capture loop, which looks at every socket of the
// main thread, stays as short as without the mirror.
class MirrorThread : public WriteTap {
  public:
    MirrorThread(EventDispatch& dispatch, const MirrorSettings& settings) {
        m_thread.start();
        m_context.moveToThread(&m_thread);
        run([&] {
            m_server = new MirrorServer(dispatch, settings);
            if (m_server->listen())
                m_port = m_server->port();
            else
                m_error = m_server->error();
        });
    }
    // Bytes already handed over are taken in before the server goes.
    ~MirrorThread() override {
        run([this] { delete m_server; });
        m_thread.quit();
        m_thread.wait();
    }

    // The bytes cross over once the frames have gone, at the next turn of
    // the main thread's loop: waking the other thread mid-caption would
    // take the processor from the frames still to go.
    void written(const std::string& bytes) override {
        if (m_pending.empty())
            QMetaObject::invokeMethod(
                &m_here, [this] { handOver(); }, Qt::QueuedConnection);
        m_pending += bytes;
    }
    bool listening() const { return m_error.empty(); }
    const std::string& error() const { return m_error; }
    std::uint16_t port() const { return m_port; }
    std::size_t readers() const { return m_server->readerCount(); }

  private:
    void handOver() {
        QMetaObject::invokeMethod(
            &m_context,
            [server = m_server, bytes = std::move(m_pending)] { server->tap().written(bytes); },
            Qt::QueuedConnection);
        m_pending.clear();
    }
    void run(const std::function<void()>& fn) {
        QMetaObject::invokeMethod(&m_context, fn, Qt::BlockingQueuedConnection);
    }

    QThread m_thread;
    QObject m_context;  // lives on the thread
    QObject m_here;     // lives on the main thread
    std::string m_pending;
    MirrorServer* m_server = nullptr;
    std::uint16_t m_port = 0;
    std::string m_error;
};

WebMirror::WebMirror(SerialLink& link, EventDispatch& dispatch, SettingsStore& store)
    : m_link(link), m_dispatch(dispatch), m_store(store), m_settings(readMirrorSettings(store)) {
    if (m_settings.enabled) start();
}

WebMirror::~WebMirror() {
    stop();
}

void WebMirror::apply(const MirrorSettings& settings) {
    if (settings == m_settings && (running() || !settings.enabled)) return;
    m_settings = settings;
    writeMirrorSettings(m_store, m_settings);
    stop();
    if (m_settings.enabled) start();
}

void WebMirror::start() {
    auto server = std::make_unique<MirrorThread>(m_dispatch, m_settings);
    if (!server->listening()) {
        m_error = server->error();
        return;
    }
    m_error.clear();
    m_server = std::move(server);
    m_link.addTap(*m_server);
}

void WebMirror::stop() {
    m_error.clear();
    if (!m_server) return;
    m_link.removeTap(*m_server);
    m_server.reset();
}

std::size_t WebMirror::readers() const {
    return m_server ? m_server->readers() : 0;
}

std::string WebMirror::url() const {
    const QHostAddress address =
        reachableAddress(QHostAddress(QString::fromStdString(m_settings.address)));
    QString host = address.toString();
    if (address.protocol() == QAbstractSocket::IPv6Protocol) host = "[" + host + "]";
    const std::uint16_t port = m_server ? m_server->port() : m_settings.port;
    return "http://" + host.toStdString() + ":" + std::to_string(port) + "/";
}

}  // namespace zelvan
