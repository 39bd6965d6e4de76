// The web mirror in the running program, under bad input, and its window.

#include <gtest/gtest.h>
#include <QTcpSocket>
#include <QWebSocket>
#include <filesystem>

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

const std::string kRow = "\x01\x20\x22 abc\x01";  // "cba" on row 3

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

// A masked 600-byte frame: within the frame limit; three make too long a message.
QByteArray frame(char finAndOpcode) {
    return QByteArray(1, finAndOpcode) + "\xFE\x02\x58" + QByteArray(4 + 600, '\0');
}

QByteArray handshake() {
    return "GET /live HTTP/1.1\r\nHost: x\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
           "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\nSec-WebSocket-Version: 13\r\n\r\n";
}

long openFiles(pid_t pid) {
    const std::string fds = "/proc/" + std::to_string(pid) + "/fd";
    return std::distance(std::filesystem::directory_iterator(fds), {});
}

std::uint16_t freePort() {
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort();
}

// The real program, its mirror open to two readers, under bad input while
// captions go to the sign: each request is turned away and nothing else; the
// sign gets every frame, the reader every caption; all let go is freed.
TEST(MirrorInTheProgram, BadInputCostsTheSignNoFrameAndTheReaderNoCaption) {
    const std::uint16_t port = freePort();
    testing::ProgramRig rig(ZELVAN_BINARY, "[WebMirror]\nEnabled=true\nMaxClients=2\nPort=" +
                                               std::to_string(port) + "\n");
    ASSERT_TRUE(rig.waitUntil([&] { return rig.boxReady(); }, 20000));
    rig.waitUntil([] { return false; }, 500);
    const auto filesBefore = openFiles(rig.pid());
    Reader reader(port), second(port);
    ASSERT_TRUE(reader.gets("Welcome") && second.gets("Welcome"));
    Reader third(port);
    EXPECT_TRUE(waitFor([&] { return third.socket.closeReason() == "Too many readers"; }));
    second.socket.close();  // its place is for the requests below, then for another
    QTcpSocket idle;        // connects and never asks for anything
    idle.connectToHost(QHostAddress::LocalHost, port);
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
        {"a long message in small frames",
         handshake() + "|" + frame(0x01) + frame(0x00) + frame(0x80), "HTTP/1.1 101"},
        {"2,000 connection attempts", {}, {}},
    };
    std::string sent;
    for (int i = 0; i < std::ssize(cases); ++i) {
        const std::string text = "Caption " + std::to_string(i);
        sent += testing::popOnCaption(text);
        rig.sendToBox(testing::popOnCaption(text));
        if (cases[i].request.isEmpty()) {
            std::vector<std::unique_ptr<QTcpSocket>> flood(2000);
            for (auto& s : flood) s = std::make_unique<QTcpSocket>();
            for (auto& s : flood) s->connectToHost(QHostAddress::LocalHost, port);
            testing::settle(500);
            EXPECT_LE(openFiles(rig.pid()), filesBefore + 2 + MirrorServer::kSpareConnections);
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
    // Past the bound on a request the idle connection is gone, the reader not.
    rig.waitUntil([] { return false; }, ConnectionGate::kRequestBoundMs);
    Reader another(port);
    rig.sendToBox(testing::popOnCaption("Still here"));
    EXPECT_TRUE(reader.gets("Still here") && another.gets("Still here"));
    EXPECT_EQ(idle.state(), QAbstractSocket::UnconnectedState);
    EXPECT_TRUE(rig.waitUntil([&] { return openFiles(rig.pid()) == filesBefore + 2; }, 3000));
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
    // A quiet zone of four modules, then the finder: dark ring, light, dark centre.
    const QImage qr = qrCodeImage("http://127.0.0.1:8021/", 1);
    for (auto [at, dark] : {std::pair{3, false}, {4, true}, {5, false}, {7, true}})
        EXPECT_EQ(qGray(qr.pixel(at, at)) < 128, dark) << at;
    frmMirror again(mirror);
    EXPECT_TRUE(again.findChild<QCheckBox*>("chkMirrorOn")->isChecked());
    EXPECT_EQ(again.findChild<QLabel*>("lblMirrorAddress")->text(),
              window.findChild<QLabel*>("lblMirrorAddress")->text());
    Reader reader(free);
    link.write(kRow);
    EXPECT_TRUE(reader.gets("cba"));
    window.refreshNow();
    EXPECT_EQ(window.findChild<QLabel*>("lblReaders")->text(), "1 reader connected");
    on->setChecked(false);
    EXPECT_TRUE(
        waitFor([&] { return reader.socket.state() == QAbstractSocket::UnconnectedState; }));
    EXPECT_FALSE(readMirrorSettings(rig.store).enabled);
    link.write(kRow);  // no tap left on the link
    mirror.apply({true, "nowhere", free, 5});
    window.refreshNow();
    EXPECT_EQ(window.findChild<QLabel*>("lblReaders")->text().toStdString(),
              "\"nowhere\" is not an address of this computer.");
    mirror.apply({false, "0.0.0.0", free, 5});  // a phone is told an address it can reach
    EXPECT_EQ(mirror.url().find("0.0.0.0"), std::string::npos) << mirror.url();
}

}  // namespace
}  // namespace zelvan
