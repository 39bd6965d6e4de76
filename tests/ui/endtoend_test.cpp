// The real program between a decoder box and the sign, both on pseudo-terminals
// or both network peers on loopback.

#include <signal.h>
#include <sys/wait.h>

#include <gtest/gtest.h>
#include <QTcpServer>
#include <QTcpSocket>

#include <fstream>

#include "display/signmodel.h"
#include "support/logicframes.h"
#include "support/programrig.h"

namespace zelvan {

void PrintTo(Links links, std::ostream* out) {
    *out << (links == Links::Pty ? "pty" : "tcp");
}

namespace {

using testing::l21Pair;
using testing::Links;
using testing::popOnCaption;
using testing::ProgramRig;

struct EndToEnd : ::testing::TestWithParam<Links> {
    ProgramRig rig{ZELVAN_BINARY, ProgramOptions{.links = GetParam()}};
    SignModel sign;

    // Up once the decoder's link is there and the open's purge has passed.
    void SetUp() override {
        ASSERT_TRUE(rig.running());
        ASSERT_TRUE(rig.waitUntil([&] { return rig.boxReady(); }, 20000))
            << "the program never opened the decoder's link";
        rig.waitUntil([] { return false; }, 500);
    }

    // Feeds the model of the sign all it got so far.
    bool signShows(const std::string& text) {
        sign = SignModel();
        sign.feed(rig.signBytes);
        for (int r = 1; r <= 3; ++r)
            if (sign.rowThroughReflector(r).find(text) != std::string::npos) return true;
        return false;
    }
};

// Pop-on and roll-up captions leave byte for byte as the logic sends them,
// whether the decoder and the sign hang on cables or on the network.
TEST_P(EndToEnd, CaptionsFromTheSerialDecoderReachTheSignAsTheLogicSendsThem) {
    EXPECT_TRUE(rig.waitUntil([&] { return signShows("Welcome to Halvane Captions."); }, 5000))
        << sign.dump();
    EXPECT_NE(sign.row(1).find(".snoitpaC enavlaH ot emocleW"), std::string::npos);

    const std::string popOn = popOnCaption("Hello there");
    std::string rollUp;
    for (int code : {0x25, 0x25, 0x70, 0x70}) rollUp += l21Pair(0x14, code);  // two rows, at 15
    rollUp += "First line" + l21Pair(0x14, 0x2D) + l21Pair(0x14, 0x2D);
    rig.sendToBox(popOn);
    const std::string popOnFrames = testing::logicFrames(popOn);
    EXPECT_TRUE(rig.waitUntil([&] { return rig.signBytes.ends_with(popOnFrames); }, 5000));
    EXPECT_TRUE(signShows("Hello there") && sign.bright) << sign.dump();
    rig.sendToBox(rollUp);
    const std::string bothFrames = testing::logicFrames(popOn + rollUp);
    EXPECT_TRUE(rig.waitUntil([&] { return rig.signBytes.ends_with(bothFrames); }, 5000));
    EXPECT_TRUE(signShows("First line")) << sign.dump();
}

// A signal takes the Exit button's road: the exit task's startup caption, the
// settings saved, gone in 3 s; a sign on the network gets that caption before
// the connection closes. A second signal on that road ends it at once.
TEST_P(EndToEnd, ASignalEndsTheProgramAsTheExitButtonDoesAndASecondAtOnce) {
    rig.sendToBox(popOnCaption("Hello there"));
    ASSERT_TRUE(rig.waitUntil([&] { return signShows("Hello there"); }, 5000)) << sign.dump();
    ::kill(rig.pid(), SIGTERM);
    EXPECT_TRUE(rig.waitUntil([&] { return !rig.running(); }, 3000));
    rig.readSign(100);
    EXPECT_TRUE(signShows("Welcome to Halvane Captions.")) << sign.dump();
    std::ifstream ini(rig.configHome() + "/Zelvan21/Zelvan21.ini");
    EXPECT_NE(std::string(std::istreambuf_iterator<char>(ini), {}).find("ExitDisplayTask=1"),
              std::string::npos);

    ProgramRig twice(ZELVAN_BINARY, ProgramOptions{.links = GetParam()});
    ASSERT_TRUE(twice.waitUntil([&] { return twice.boxReady(); }, 20000));
    for (int sig : {SIGINT, SIGHUP}) ::kill(twice.pid(), sig);
    EXPECT_TRUE(twice.waitUntil([&] { return !twice.running(); }, 1000) &&
                WIFSIGNALED(twice.waitStatus()));
}

INSTANTIATE_TEST_SUITE_P(CablesAndNetwork, EndToEnd,
                         ::testing::Values(Links::Pty, Links::Loopback));

// The sign behind a serial server gets its captions; while the server is gone
// the program only waits, and the next caption after it is back reaches the
// sign (its text reversed).
TEST(EndToEndNetwork, SignBehindASerialServerGetsCaptionsAndResumesWhenTheServerIsBack) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const std::uint16_t at = server.serverPort();
    ProgramRig rig(ZELVAN_BINARY,
                   ProgramOptions{.signDevice = "tcp://127.0.0.1:" + std::to_string(at)});
    ASSERT_TRUE(server.waitForNewConnection(20000));
    QTcpSocket* sign = server.nextPendingConnection();
    ASSERT_TRUE(rig.waitUntil([&] { return rig.holds(rig.box.slave); }, 20000));
    rig.waitUntil([] { return false; }, 500);
    std::string got;
    const auto signGets = [&](const std::function<bool()>& done) {
        return rig.waitUntil(
            [&] { return sign->waitForReadyRead(5), got += sign->readAll().toStdString(), done(); },
            8000);
    };
    const std::string popOn = popOnCaption("Hello there");
    rig.sendToBox(popOn);
    EXPECT_TRUE(signGets([&] { return got.ends_with(testing::logicFrames(popOn)); }));

    sign->abort();
    server.close();
    rig.waitUntil([] { return false; }, 500);  // told the operator, tried again
    EXPECT_LT(rig.cpuShare(3000), 0.02) << "busy with the server gone";

    ASSERT_TRUE(server.listen(QHostAddress::LocalHost, at));
    ASSERT_TRUE(server.waitForNewConnection(8000));
    sign = server.nextPendingConnection();
    rig.waitUntil([] { return false; }, 300);
    rig.sendToBox(popOnCaption("Back again"));
    EXPECT_TRUE(signGets([&] { return got.find("niaga kcaB") != std::string::npos; }));
}

}  // namespace
}  // namespace zelvan
