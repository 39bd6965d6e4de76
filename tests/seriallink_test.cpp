// Serial link management over the fake port, on virtual time: the settings
// sections, opening and closing with their messages, the display link's
// bounded drain, hang-up and dial, notices, and a device that goes away.

#include <gtest/gtest.h>

#include "display/seriallink.h"
#include "support/fakes.h"
#include "support/fakeserialport.h"
#include "support/recordinglinkview.h"

namespace zelvan {
namespace {

struct LinkTest : ::testing::Test {
    testing::Rig rig;
    FakeSerialPort port{rig.dispatch};
    testing::RecordingLinkView view;
    std::unique_ptr<SerialLink> link;

    void make(const LinkProfile& profile) {
        link = std::make_unique<SerialLink>(profile, port, rig.tavo, view);
    }
    void openLink(const LinkProfile& profile) {
        make(profile);
        link->openPort();
        rig.dispatch.yield();  // the state event
        ASSERT_TRUE(link->isPortOpen());
    }
    long long now() const { return rig.dispatch.nowMs(); }
};

// --- the settings text and the sections ---

TEST(PortSettingsString, FollowsTheLetterAndStopRules) {
    VirtualDispatch dispatch;
    FakeSerialPort port(dispatch);
    port.setPort(3);
    port.setBaud(19200);
    port.setParity(parity::kEven);
    port.setDatabits(7);
    port.setStopbits(stopbits::kOneAndHalf);
    EXPECT_EQ(portSettingsString(port), "3:19200,e,7,1.5");
    port.setParity(parity::kMark);
    port.setStopbits(5);
    EXPECT_EQ(portSettingsString(port), "3:19200,e,7,1.5");
}

TEST_F(LinkTest, EachLinkHasItsDefaultsAndTextThatIsNoNumberKeepsThem) {
    const std::pair<const LinkProfile*, const char*> cases[] = {{&kL21Link, "1:1200,o,7,1"},
                                                                {&kAsciiLink, "1:9600,n,8,1"},
                                                                {&kDisplayLink, "2:9600,n,8,1"}};
    rig.store.set("DWPort", "baud", "fast");
    rig.store.set("DWPort", "parity", "");
    rig.store.set("DWPort", "databits", "7x");
    for (auto [profile, text] : cases) {
        FakeSerialPort fresh(rig.dispatch);
        SerialLink l(*profile, fresh, rig.tavo, view);
        l.loadSettings();
        EXPECT_EQ(view.setupCaption, text) << profile->section;
    }
}

TEST_F(LinkTest, SaveClosesAnOpenPortFirstAndDecoderStopsCapture) {
    openLink(kL21Link);
    port.setBaud(2400);
    rig.tavo.bStopCapture = false;
    const long long yieldsBefore = rig.dispatch.yieldCount();
    link->saveSettings();
    EXPECT_FALSE(link->isPortOpen());
    EXPECT_TRUE(rig.tavo.bStopCapture);
    EXPECT_GE(rig.dispatch.yieldCount() - yieldsBefore, 1000);
    EXPECT_EQ(rig.store.get("L21Port", "baud", ""), "2400");
    EXPECT_EQ(view.openCaption, "Open");  // the state event ran in those yields
}

// --- opening and closing ---

TEST_F(LinkTest, OpenSucceedsPurgesAndClearsTheReminder) {
    make(kAsciiLink);
    view.reminder = true;
    link->openPort();
    EXPECT_TRUE(link->isPortOpen());
    EXPECT_EQ(port.purges, 1);
    EXPECT_FALSE(view.reminder);
    EXPECT_EQ(view.openCaption, "Open");  // the caption follows the state event...
    rig.dispatch.yield();
    EXPECT_EQ(view.openCaption, "Close");  // ...which arrives in a yield
    link->openPort();
    EXPECT_EQ(port.opens, 1);  // an open port isn't opened again
}

TEST_F(LinkTest, FailedOpenOrCloseShowsOneMessageWithTheSystemsReason) {
    make(kL21Link);
    port.failNextOpen("Permission denied");
    link->openPort();
    EXPECT_FALSE(link->isPortOpen());
    EXPECT_EQ(port.purges, 0);
    EXPECT_EQ(view.openCaption, "Open");
    link->openPort();  // the next try works
    rig.dispatch.yield();
    port.failNextClose("Input/output error");
    link->closePort();
    EXPECT_TRUE(link->isPortOpen());
    link->closePort();
    EXPECT_FALSE(link->isPortOpen());
    EXPECT_EQ(view.boxes, (std::vector<std::string>{"Couldn't open port.|Permission denied",
                                                    "Couldn't close port.|Input/output error"}));
}

TEST_F(LinkTest, DisplayCloseDeliversWrittenFramesFirstButGivesUpAfterTwoSeconds) {
    openLink(kDisplayLink);
    port.setDrainMsPerByte(10);
    link->write("ABCDE");
    long long start = now();
    link->closePort();
    EXPECT_EQ(port.sent, "ABCDE");
    EXPECT_EQ(port.purges, 1);  // only the one of opening
    EXPECT_EQ(now() - start, 50);
    EXPECT_FALSE(link->isPortOpen());

    link->openPort();
    port.setDrainMsPerByte(-1);  // a stalled line
    link->write("stuck");
    start = now();
    link->closePort();
    EXPECT_EQ(now() - start, kDrainBoundMs);
    EXPECT_FALSE(link->isPortOpen());
    EXPECT_TRUE(view.boxes.empty());
}

// --- modem commands and notices ---

TEST_F(LinkTest, HangUpPausesAroundTheEscapeWhileInputFlows) {
    make(kAsciiLink);
    link->hangUpPort();  // closed: nothing, no time
    EXPECT_EQ(now(), 0);
    link->openPort();
    rig.dispatch.postAt(700, [&] { port.deliver("in"); });
    const long long start = now();
    link->hangUpPort();
    EXPECT_EQ(now() - start, 3000);
    EXPECT_EQ(port.writes, (std::vector<std::string>{"+++", "ATH\r"}));
    EXPECT_TRUE(link->isPortOpen());
    EXPECT_EQ(rig.tavo.totalChars, 2);  // received during the pause
}

// The sign preview's feed: what went out on the line, modem commands included,
// and nothing a closed port refused.
TEST_F(LinkTest, TapSeesExactlyTheBytesThatWentOnTheLine) {
    struct Tap : WriteTap {
        void written(const std::string& bytes) override { seen += bytes; }
        std::string seen;
    } tap;
    make(kDisplayLink);
    link->setTap(&tap);
    link->write("refused");
    link->openPort();
    link->write("frame");
    link->dial("555");
    link->setTap(nullptr);
    link->write("after");
    EXPECT_EQ(tap.seen, "frameatdt555\r");
}

TEST_F(LinkTest, NoticeLastsFiveSecondsAndANewOneRestartsThem) {
    make(kDisplayLink);
    link->showNotice(true, "Toggle front/back");
    EXPECT_EQ(rig.tone.tones, (std::vector<std::pair<int, int>>{{740, 250}, {400, 250}}));
    rig.dispatch.advance(3000);
    link->showNotice(true, "Open port first.");
    rig.dispatch.advance(4999);
    EXPECT_EQ(view.notice, "Open port first.");
    rig.dispatch.advance(1);
    EXPECT_EQ(view.notice, "");
    rig.dispatch.advance(20000);  // the timer stopped: nothing else happens
    EXPECT_EQ(rig.tone.tones.size(), 4u);
}

// --- a sender faster than the reader ---

TEST_F(LinkTest, BurstOfSeveralRingsReachesTheFilterWholeAndInOrder) {
    openLink(kL21Link);
    testing::Log log;
    testing::FakeFilter filter("decoder", log);
    rig.tavo.frmL21Serial = &filter;
    rig.tavo.bInL21Serial = true;
    std::string burst;
    for (int i = 0; i < 5000; ++i) burst += static_cast<char>(' ' + i % 90);
    port.deliver(burst);
    for (int turn = 0; turn < 50 && filter.received.size() < burst.size(); ++turn)
        rig.tavo.pollInput();
    EXPECT_EQ(filter.received, burst);
}

// --- a device that goes away ---

TEST_F(LinkTest, LostDeviceClosesOnceTellsOnceAndCanBeReopened) {
    openLink(kL21Link);
    int hooks = 0;
    link->whenLost = [&] { ++hooks; };
    rig.tavo.bStopCapture = false;
    port.vanish("Input/output error");
    port.vanish("again");  // already gone: nothing more
    rig.dispatch.advance(10);
    EXPECT_FALSE(link->isPortOpen());
    EXPECT_EQ(view.openCaption, "Open");
    ASSERT_EQ(view.alerts.size(), 1u);
    EXPECT_NE(view.alerts[0].find("The port has gone away.|Input/output error"), std::string::npos);
    EXPECT_TRUE(view.boxes.empty());
    EXPECT_EQ(hooks, 1);
    EXPECT_TRUE(rig.tavo.bStopCapture);  // like a press of Close

    link->openPort();
    EXPECT_TRUE(link->isPortOpen());
    EXPECT_EQ(view.openCaption, "Close");
}

}  // namespace
}  // namespace zelvan
