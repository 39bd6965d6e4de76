#include "display/mirror/webmirror.h"

#include <QHostAddress>
#include <QNetworkInterface>

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

// The server lives on the program's one thread. Its tap only takes note of
// the bytes; the readers hear of a change after the feed's settling time, so
// the sign's frames go out first.
void WebMirror::start() {
    auto server = std::make_unique<MirrorServer>(m_dispatch, m_settings);
    if (!server->listen()) {
        m_error = server->error();
        return;
    }
    m_error.clear();
    m_server = std::move(server);
    m_link.addTap(m_server->tap());
}

void WebMirror::stop() {
    m_error.clear();
    if (!m_server) return;
    m_link.removeTap(m_server->tap());
    m_server.reset();
}

std::size_t WebMirror::readers() const {
    return m_server ? m_server->readerCount() : 0;
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
