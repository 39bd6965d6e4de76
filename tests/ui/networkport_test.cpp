// The port component on a loopback TCP connection, as the windows use it
// through a link: the test holds the far end, a server or a client.

#include <gtest/gtest.h>
#include <QTcpServer>
#include <QTcpSocket>
#include <ctime>

#include "platform/seriallink.h"
#include "platform/devicemap.h"
#include "platform/qtport.h"
#include "support/qtrig.h"
#include "support/recordinglinkview.h"

namespace zelvan {
namespace {

using testing::waitFor;

struct NetworkPortTest : ::testing::Test, testing::QtRig {
    QTcpServer far;  // the serial server, or the caption writer's side
    QtPort port{dispatch, store};
    testing::RecordingLinkView view;
    SerialLink link{kDisplayLink, port, tavo.linkContext(), view};
    std::string received;
    int backs = 0;

    void SetUp() override {
        ASSERT_TRUE(far.listen(QHostAddress::LocalHost));
        port.onReceive = [&] {
            while (port.rxCount() >= 1) received += static_cast<char>(port.readByte());
        };
        link.whenLost = [] { return true; };
        link.whenBack = [&] { ++backs; };
    }
    void mapTo(const std::string& entry) { setDevicePath(store, port.port(), entry); }
    std::uint16_t freePort() {  // the far server's, once it no longer listens
        const std::uint16_t free = far.serverPort();
        far.close();
        return free;
    }
    QTcpSocket* accepted() {
        return waitFor([&] { return far.hasPendingConnections(); }) ? far.nextPendingConnection()
                                                                    : nullptr;
    }
    bool carries(QTcpSocket* peer) {
        link.write("to far");
        peer->write("to us");
        return waitFor([&] { return peer->bytesAvailable() >= 6; }) &&
               peer->readAll() == "to far" && waitFor([&] { return received.ends_with("to us"); });
    }
};

TEST_F(NetworkPortTest, RefusedConnectNamesHostPortAndReason) {
    const std::string entry = "tcp://127.0.0.1:" + std::to_string(freePort());
    mapTo(entry);
    link.openPort();
    mapTo("tcp://127.0.0.1:0");
    link.openPort();
    EXPECT_EQ(view.boxes, (std::vector<std::string>{
                              "Couldn't open port.|" + entry + ": Connection refused.",
                              "Couldn't open port.|" + parseDevice(1, "tcp://127.0.0.1:0").error}));
}

// The server gone costs one message and no processor time while the client
// tries again; the server back on the same port, the link is back by itself.
TEST_F(NetworkPortTest, ClientCarriesBothWaysAndReconnectsWhenTheServerIsBack) {
    mapTo("tcp://127.0.0.1:" + std::to_string(far.serverPort()));
    link.openPort();
    QTcpSocket* peer = accepted();
    ASSERT_TRUE(peer && carries(peer));

    const std::uint16_t at = freePort();
    peer->abort();
    ASSERT_TRUE(waitFor([&] { return !view.alerts.empty(); }));
    const std::clock_t before = std::clock();
    testing::settle(1200);  // two tries with nothing there
    EXPECT_LT((std::clock() - before) * 1000 / CLOCKS_PER_SEC, 600);  // not a spin
    EXPECT_TRUE(view.alerts.size() == 1 &&
                view.alerts[0].starts_with(std::string(kPortLost) + "|tcp://127.0.0.1:") &&
                view.alerts[0].ends_with(kConnectionLostAdvice));

    ASSERT_TRUE(far.listen(QHostAddress::LocalHost, at));
    peer = accepted();
    EXPECT_TRUE(peer && waitFor([&] { return backs == 1; }, 6000) && carries(peer));
}

TEST_F(NetworkPortTest, ListenerTakesOnePeerAtATimeAndWaitsForTheNext) {
    const std::uint16_t at = freePort();
    mapTo("tcp-listen://127.0.0.1:" + std::to_string(at));
    link.openPort();
    QTcpSocket first, second;
    first.connectToHost(QHostAddress::LocalHost, at);
    ASSERT_TRUE(waitFor([&] { return first.state() == QAbstractSocket::ConnectedState; }));
    second.connectToHost(QHostAddress::LocalHost, at);
    EXPECT_TRUE(waitFor([&] { return second.state() == QAbstractSocket::UnconnectedState; }));
    EXPECT_TRUE(carries(&first));

    first.abort();
    ASSERT_TRUE(waitFor([&] { return view.alerts.size() == 1; }));
    second.connectToHost(QHostAddress::LocalHost, at);
    EXPECT_TRUE(waitFor([&] { return backs == 1; }) && carries(&second));
}

}  // namespace
}  // namespace zelvan
