// The web mirror's server on loopback, against well-behaved readers and bad
// input, and its window.

#include <gtest/gtest.h>
#include <QTcpSocket>
#include <QWebSocket>

#include <QCheckBox>
#include <QLabel>

#include "display/mirror/frmmirror.h"
#include "display/mirror/mirrorserver.h"
#include "platform/nullport.h"
#include "support/qtrig.h"
#include "support/recordinglinkview.h"

namespace zelvan {
namespace {

using testing::waitFor;

// "cba" and a mark on row 3.
std::string row(const std::string& mark = "") {
    return "\x01\x20\x22 abc" + mark + "\x01";
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
        {"1 MB header", "GET / HTTP/1.1\r\nX: " + QByteArray(1 << 20, 'a') + "\r\n\r\n",
         "<closed>"},
        {"no such page", "GET /other HTTP/1.1\r\nHost: x\r\n\r\n", "HTTP/1.1 404", false},
        {"bad opcode", handshake() + "|" + QByteArray("\x83\x80\x01\x02\x03\x04", 6),
         "HTTP/1.1 101"},
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
    EXPECT_EQ(server->gate().kept(), 1u);
}

std::uint16_t freePort() {
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort();
}

// The window turns the mirror on and off and keeps the choice; while on, the
// display link's frames reach the readers, and it shows where to find them.
TEST(FrmMirrorTest, TheWindowTurnsTheMirrorOnAndShowsWhereToFindIt) {
    testing::QtRig rig;
    NullPort port{rig.dispatch};
    testing::RecordingLinkView view;
    SerialLink link{kDisplayLink, port, rig.tavo.linkContext(), view};
    link.openPort();
    const std::uint16_t free = freePort();
    rig.store.set(kWebMirrorSection, "Port", std::to_string(free));
    WebMirror mirror(link, rig.dispatch, rig.store);
    frmMirror window(mirror);
    auto* on = window.findChild<QCheckBox*>("chkMirrorOn");
    on->setChecked(true);
    EXPECT_TRUE(mirror.running() && readMirrorSettings(rig.store).enabled) << mirror.error();
    EXPECT_EQ(window.findChild<QLabel*>("lblMirrorAddress")->text(),
              QStringLiteral("http://127.0.0.1:%1/").arg(free));
    EXPECT_FALSE(window.findChild<QLabel*>("lblQrCode")->pixmap().isNull());
    Reader reader(free);
    EXPECT_TRUE(reader.gets("seq"));
    link.write(row());
    EXPECT_TRUE(reader.gets("cba"));
    window.refreshNow();
    EXPECT_EQ(window.findChild<QLabel*>("lblReaders")->text(), "1 reader connected");
    on->setChecked(false);
    EXPECT_TRUE(
        waitFor([&] { return reader.socket.state() == QAbstractSocket::UnconnectedState; }));
    EXPECT_FALSE(readMirrorSettings(rig.store).enabled);
    link.write(row("after"));  // no tap left on the link
}

}  // namespace
}  // namespace zelvan
