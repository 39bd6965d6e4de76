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
#include "support/logicframes.h"
#include "support/programrig.h"
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

// Connections that only connect.
std::vector<std::unique_ptr<QTcpSocket>> crowd(std::uint16_t port, int n) {
    std::vector<std::unique_ptr<QTcpSocket>> sockets(n);
    for (auto& s : sockets) {
        s = std::make_unique<QTcpSocket>();
        s->connectToHost(QHostAddress::LocalHost, port);
    }
    return sockets;
}

QByteArray handshake() {
    return "GET /live HTTP/1.1\r\nHost: x\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
           "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\nSec-WebSocket-Version: 13\r\n\r\n";
}

std::uint16_t freePort() {
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort();
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

// Readers past the limit are refused with a reason, and a flood of
// connections leaves the readers served; every connection let go is freed.
TEST_F(MirrorServerTest, AFloodPastTheLimitIsRefusedAndTheReadersGoOn) {
    start(2);
    Reader first(server->port()), second(server->port());
    ASSERT_TRUE(first.gets("seq") && second.gets("seq"));
    Reader third(server->port());
    EXPECT_TRUE(waitFor([&] { return third.socket.closeReason() == "Too many readers"; }));
    EXPECT_TRUE(third.got.isEmpty());
    {
        const auto flood = crowd(server->port(), 200);
        EXPECT_TRUE(waitFor([&] { return server->gate().refused > 0; }));
    }
    show(row());
    EXPECT_TRUE(first.gets("cba") && second.gets("cba"));
    second.socket.close();
    EXPECT_TRUE(waitFor([&] { return server->gate().open() == 1; }));
    EXPECT_EQ(server->gate().kept(), 1u);
}

// The real program with the mirror on, a reader and a sign: each bad request
// comes while a caption is on its way. It is turned away and nothing else: the
// sign gets every frame as the logic sends them, the reader every caption, and
// the page is still served.
TEST(MirrorInTheProgram, BadInputCostsTheSignNoFrameAndTheReaderNoCaption) {
    const std::uint16_t port = freePort();
    testing::ProgramRig rig(ZELVAN_BINARY,
                            "[WebMirror]\nEnabled=true\nPort=" + std::to_string(port) + "\n");
    ASSERT_TRUE(rig.waitUntil([&] { return rig.boxReady(); }, 20000));
    rig.waitUntil([] { return false; }, 500);
    Reader reader(port);
    ASSERT_TRUE(reader.gets("Welcome"));
    const struct {
        const char* what;
        QByteArray request;
        QByteArray answerStart;  // then the connection closes
    } cases[] = {
        {"malformed request line", "GARBAGE\r\n\r\n", "<closed>"},
        {"1 MB header", "GET / HTTP/1.1\r\nX: " + QByteArray(1 << 20, 'a') + "\r\n\r\n",
         "<closed>"},
        {"bad opcode", handshake() + "|" + QByteArray("\x83\x80\x01\x02\x03\x04", 6),
         "HTTP/1.1 101"},
        {"2,000 connection attempts", {}, {}},
    };
    std::string sent;
    for (int i = 0; i < std::ssize(cases); ++i) {
        const std::string text = "Caption " + std::to_string(i);
        sent += testing::popOnCaption(text);
        rig.sendToBox(testing::popOnCaption(text));
        if (cases[i].request.isEmpty()) {
            const auto flood = crowd(port, 2000);
            testing::settle(500);
        } else {
            const QByteArray answer = exchange(port, cases[i].request, 100);
            EXPECT_TRUE(answer.startsWith(cases[i].answerStart) && answer.endsWith("<closed>"))
                << cases[i].what << ": " << answer.left(200).toStdString();
        }
        const std::string frames = testing::logicFrames(sent);
        EXPECT_TRUE(rig.waitUntil([&] { return rig.signBytes.ends_with(frames); }, 5000))
            << cases[i].what;
        EXPECT_TRUE(reader.gets(text.c_str())) << cases[i].what;
    }
    const QByteArray page = exchange(port, "GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_TRUE(page.startsWith("HTTP/1.1 200") && page.contains("/live") &&
                page.contains("Content-Security-Policy: default-src 'none'"));
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
