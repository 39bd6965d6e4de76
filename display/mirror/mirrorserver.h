#pragma once
// The web mirror's server, on Qt's own HTTP server and WebSockets: GET / gives
// the page from the program's resources; /live is a WebSocket that sends the
// sign as it stands, then a message at each change of it. It is read-only:
// what a reader sends is never looked at.
//
// It guards the program against the network: connections past the readers'
// limit and a margin for page loads are refused; a connection that isn't a
// reader after 10 s is closed, whatever it sent; a reader that stops reading
// is dropped when its queue overflows.

#include <QHttpServer>
#include <QPointer>
#include <QTcpServer>
#include <QTimer>
#include <QWebSocketProtocol>
#include <atomic>
#include <memory>
#include <set>
#include <unordered_map>

#include "display/mirror/mirrorclients.h"
#include "display/mirror/mirrorfeed.h"
#include "display/mirror/mirrorsettings.h"

class QWebSocket;

namespace zelvan {

class WebReader;

// Takes the connections the listener accepts, or refuses them when it holds
// as many as it may. It closes those that stay no more than a request, and a
// request larger than any the page makes.
class ConnectionGate : public QTcpServer {
  public:
    static constexpr int kRequestBoundMs = 10000;
    static constexpr qint64 kLargestRequest = 16 * 1024;
    // What the system may hold for a reader beyond its queue; left alone, it
    // grows to megabytes for a reader that stops reading.
    static constexpr int kSystemSendBuffer = 64 * 1024;

    ConnectionGate(int most, QObject* parent) : QTcpServer(parent), m_most(most) {}
    ~ConnectionGate() override;
    // The connection from this peer became a reader: it stays.
    void keep(const QHostAddress& address, quint16 port);
    void release(const QHostAddress& address, quint16 port);
    // Connections held now, readers and requests.
    int open();

  protected:
    void incomingConnection(qintptr descriptor) override;

  private:
    bool isKept(const QTcpSocket& socket) const;

    int m_most;
    std::vector<QPointer<QTcpSocket>> m_sockets;
    std::set<std::pair<QString, quint16>> m_kept;
};

class MirrorServer : public QObject {
  public:
    // Connections beyond the readers': pages loading, browsers' spare ones.
    static constexpr int kSpareConnections = 64;
    // A reader's messages are never read; a larger frame ends its connection.
    static constexpr int kLargestIncoming = 1024;
    static constexpr const char* kFeedPath = "/live";
    static constexpr int kCloseBoundMs = 2000;
    // How long after the last reader leaves its freed memory goes back.
    static constexpr int kGiveBackMs = 2000;

    MirrorServer(EventDispatch& dispatch, const MirrorSettings& settings);
    ~MirrorServer() override;

    // Listens on the settings' address and port; false with the reason in error().
    bool listen();
    const std::string& error() const { return m_error; }
    std::uint16_t port() const;
    WriteTap& tap() { return m_feed; }
    const MirrorClients& clients() const { return m_clients; }
    // The readers connected.
    std::size_t readerCount() const { return m_readerCount; }

  private:
    void takeReaders();
    void admit(std::unique_ptr<QWebSocket> socket);
    void refuse(QWebSocket* socket, QWebSocketProtocol::CloseCode code, const char* reason);
    void leave(QWebSocket* socket);
    void giveMemoryBack();

    MirrorSettings m_settings;
    QHttpServer m_http;
    ConnectionGate* m_gate;  // a child
    MirrorClients m_clients;
    MirrorFeed m_feed;
    std::unordered_map<QWebSocket*, std::unique_ptr<WebReader>> m_readers;
    std::atomic<std::size_t> m_readerCount = 0;
    QTimer m_giveBack;
    std::string m_error;
};

}  // namespace zelvan
