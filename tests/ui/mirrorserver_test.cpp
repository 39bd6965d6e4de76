// The web mirror's server on loopback, against well-behaved readers and bad
// input, and the real program feeding it from a null sign.

#include <gtest/gtest.h>
#include <QTcpSocket>
#include <QWebSocket>

#include "display/mirror/mirrorserver.h"
#include "support/programrig.h"
#include "support/qtrig.h"

namespace zelvan {
namespace {

using testing::waitFor;

// "cba" and a mark on row 3.
std::string row(const std::string& mark = "") {
    return "\x01\x20\x22\x20" "abc" + mark + "\x01";
}

struct Reader {
    QWebSocket socket;
    QStringList got;

    explicit Reader(std::uint16_t port) {
        QObject::connect(&socket, &QWebSocket::textMessageReceived,
                         [this](const QString& m) { got.append(m); });
        socket.open(QUrl(QStringLiteral("ws://127.0.0.1:%1/live").arg(port)));
    }
    bool gets(const char* text) {
        return waitFor([&] { return !got.isEmpty() && got.last().contains(text); });
    }
};

// Sends the bytes and reads until the server closes or `ms` pass.
QByteArray exchange(std::uint16_t port, const QByteArray& request, int pauseMs = 0) {
    QTcpSocket s;
    s.connectToHost(QHostAddress::LocalHost, port);
    if (!s.waitForConnected(2000)) return "not connected";
    QByteArray got;
    for (const QByteArray& part : request.split('|')) {
        s.write(part);
        waitFor([&] { return s.bytesToWrite() == 0; });
        testing::settle(pauseMs);
    }
    waitFor([&] {
        got += s.readAll();
        return s.state() == QAbstractSocket::UnconnectedState;
    });
    return got + (s.state() == QAbstractSocket::UnconnectedState ? "<closed>" : "<open>");
}

QByteArray handshake() {
    return "GET /live HTTP/1.1\r\nHost: x\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
           "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\nSec-WebSocket-Version: 13\r\n\r\n";
}

struct MirrorServerTest : ::testing::Test {
    QtDispatch dispatch;
    std::unique_ptr<MirrorServer> server;

    void start(int maxClients) {
        server = std::make_unique<MirrorServer>(dispatch,
                                                MirrorSettings{true, "127.0.0.1", 0, maxClients});
        ASSERT_TRUE(server->listen()) << server->error();
    }
    void show(const std::string& bytes) { server->tap().written(bytes); }
};

// Each bad request is turned away and nothing else: the reader connected
// before it still gets the next change and the page is still served.
TEST_F(MirrorServerTest, BadInputIsTurnedAwayAndTheOthersAreServed) {
    start(5);
    Reader reader(server->port());
    ASSERT_TRUE(reader.gets("\"seq\": 0"));
    const struct {
        const char* what;
        QByteArray request;
        QByteArray answerStart;
        bool closes = true;
    } cases[] = {
        {"malformed request line", "GARBAGE\r\n\r\n", "<closed>"},
        {"1 MB header", "GET / HTTP/1.1\r\nX: " + QByteArray(1 << 20, 'a') + "\r\n\r\n", "<closed>"},
        {"no such page", "GET /other HTTP/1.1\r\nHost: x\r\n\r\n", "HTTP/1.1 404", false},
        {"bad opcode", handshake() + "|" + QByteArray("\x83\x80\x01\x02\x03\x04", 6),
         "HTTP/1.1 101"},
        {"text from a reader", handshake() + "|" + QByteArray("\x81\x81\x01\x02\x03\x04y", 7) +
         "|" + QByteArray("\x88\x80\x01\x02\x03\x04", 6), "HTTP/1.1 101"},
    };
    for (int i = 0; i < std::ssize(cases); ++i) {
        const QByteArray answer = exchange(server->port(), cases[i].request, 100);
        EXPECT_TRUE(answer.startsWith(cases[i].answerStart) &&
                    answer.endsWith("<closed>") == cases[i].closes)
            << cases[i].what << ": " << answer.left(200).toStdString();
        show(row(std::to_string(i)));
        EXPECT_TRUE(reader.gets(("\"seq\": " + std::to_string(i + 1)).c_str())) << cases[i].what;
    }
    const QByteArray page = exchange(server->port(), "GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_TRUE(page.startsWith("HTTP/1.1 200") && page.contains("/live") &&
                page.contains("Content-Security-Policy: default-src 'none'"));
}

// Readers past the limit are refused with a reason, and a flood of
// connections leaves the readers served; every connection let go is freed.
TEST_F(MirrorServerTest, AFloodPastTheLimitIsRefusedAndTheReadersGoOn) {
    start(2);
    Reader first(server->port()), second(server->port());
    ASSERT_TRUE(first.gets("seq") && second.gets("seq"));
    Reader third(server->port());
    EXPECT_TRUE(waitFor([&] { return third.socket.closeReason() == "Too many readers"; }));
    EXPECT_TRUE(third.got.isEmpty());
    std::vector<std::unique_ptr<QTcpSocket>> flood;
    for (int attempt = 0; attempt < 2000; ++attempt) {
        flood.push_back(std::make_unique<QTcpSocket>());
        flood.back()->connectToHost(QHostAddress::LocalHost, server->port());
        if (flood.size() < 200) continue;
        waitFor([&] { return server->gate().open() >= 2 + MirrorServer::kSpareConnections; }, 500);
        flood.clear();
    }
    EXPECT_GT(server->gate().refused, 0);
    show(row());
    EXPECT_TRUE(first.gets("cba") && second.gets("cba"));
    second.socket.close();
    EXPECT_TRUE(waitFor([&] { return server->gate().open() == 1; }));
    Reader next(server->port());
    EXPECT_TRUE(next.gets("cba"));
    server.reset();
    EXPECT_TRUE(waitFor([&] { return first.socket.state() == QAbstractSocket::UnconnectedState; }));
}

// A venue without a sign: the display's device is null, and the captions
// still reach the phones.
TEST(WebMirrorEndToEndTest, CaptionsReachAReaderWithoutASign) {
    QTcpServer probe;  // a free port for the program
    ASSERT_TRUE(probe.listen(QHostAddress::LocalHost));
    const std::uint16_t port = probe.serverPort();
    probe.close();
    ProgramRig rig(ZELVAN_BINARY,
                   ProgramOptions{.extraIni = "[WebMirror]\nEnabled=true\nPort=" +
                                              std::to_string(port) + "\n",
                                  .signDevice = "null"});
    ASSERT_TRUE(rig.waitUntil([&] { return rig.holds(rig.box.slave); }, 20000));
    testing::settle(1500);  // the decoder port's purge after opening
    Reader reader(port);
    ASSERT_TRUE(reader.gets("Welcome"));
    rig.sendToBox(testing::popOnCaption("No sign here"));
    EXPECT_TRUE(waitFor([&] { return reader.got.last().contains("No sign here"); }, 5000));
    rig.stop();
}

}  // namespace
}  // namespace zelvan
