// Serial link management over the fake port, on virtual time.

#include <gtest/gtest.h>

#include "platform/seriallink.h"
#include "support/fakes.h"
#include "support/fakeserialport.h"
#include "support/recordinglinkview.h"

namespace zelvan {
namespace {

struct LinkTest : ::testing::Test, testing::Rig {
    FakeSerialPort port{dispatch};
    testing::RecordingLinkView view;
    std::unique_ptr<SerialLink> link;

    void make(const LinkProfile& profile) {
        link.reset();  // a link going away unhooks the port's events
        link = std::make_unique<SerialLink>(profile, port, tavo.linkContext(), view);
    }
    void openLink(const LinkProfile& profile) {
        make(profile);
        link->openPort();
        dispatch.yield();  // the state event
        ASSERT_TRUE(link->isPortOpen());
    }
    long long now() const { return dispatch.nowMs(); }
};

// Text that is no whole number keeps the default; only the decoder link
// keeps its stop bits.
TEST_F(LinkTest, SettingsComeBackAsTheirCaptionWithDefaultsForUnreadableText) {
    const std::tuple<const char*, const char*, const char*> stored[] = {
        {"L21Port", "port", "3"},          {"L21Port", "baud", "fast"},  {"L21Port", "parity", "2"},
        {"L21Port", "databits", "8x"},     {"L21Port", "stopbits", "1"}, {"DWPort", "parity", ""},
        {"DWPort", "baud", "99999999999"}, {"DWPort", "stopbits", "2"}};
    for (auto [section, key, text] : stored) store.set(section, key, text);
    for (auto [profile, text] : {std::pair{&kL21Link, "3:1200,e,7,1.5"},
                                 {&kAsciiLink, "1:9600,n,8,1"},
                                 {&kDisplayLink, "2:9600,n,8,1"}}) {
        FakeSerialPort fresh(dispatch);
        SerialLink(*profile, fresh, tavo.linkContext(), view).loadSettings();
        EXPECT_EQ(view.setupCaption, text) << profile->section;
    }
    make(kL21Link);  // saving the decoder's section stops its capture
    tavo.bStopCapture = false;
    link->saveSettings();
    EXPECT_TRUE(tavo.bStopCapture);
}

TEST_F(LinkTest, OpenOrCloseThatFailsShowsOneMessageWithTheSystemsReason) {
    make(kAsciiLink);
    view.reminder = true;
    port.failNextOpen("Permission denied");
    link->openPort();
    link->openPort();  // the next try works: it purges once and clears the reminder
    EXPECT_EQ(port.purges, 1);
    EXPECT_FALSE(view.reminder);
    EXPECT_EQ(view.openCaption, "Open");  // the caption follows the state event,
    dispatch.yield();
    EXPECT_EQ(view.openCaption, "Close");  // which arrives in a yield
    link->openPort();
    EXPECT_EQ(port.opens, 2);  // an open port isn't opened again
    port.failNextClose("Input/output error");
    link->closePort();
    EXPECT_TRUE(link->isPortOpen());
    link->closePort();
    EXPECT_FALSE(link->isPortOpen());
    EXPECT_EQ(view.boxes, (std::vector<std::string>{"Couldn't open port.|Permission denied",
                                                    "Couldn't close port.|Input/output error"}));
    dispatch.yield();
    make(kL21Link);  // the decoder's link lets events run while its box settles
    link->openPort();
    EXPECT_EQ(view.openCaption, "Close");
}

// The port works with what the device took; its refusal is told on opening
// and stands on the setup button while the port is open.
TEST_F(LinkTest, RefusedSettingIsToldOnOpenAndShownWhileOpen) {
    port.refusal = "/dev/fake0: the device can't take 7 data bits.";
    for (const LinkProfile* profile : {&kL21Link, &kAsciiLink, &kDisplayLink}) {
        view.notice.clear();
        openLink(*profile);
        EXPECT_EQ(view.notice + "|" + view.setupTip, port.refusal + "|" + port.refusal);
        link->closePort();
        dispatch.yield();
        EXPECT_EQ(view.setupTip, "") << profile->section;
    }
}

TEST_F(LinkTest, DisplayCloseDeliversWrittenFramesFirstButGivesUpAfterTwoSeconds) {
    openLink(kDisplayLink);
    port.setDrainMsPerByte(10);
    link->write("ABCDE");
    long long start = now();
    link->closePort();
    EXPECT_EQ(port.sent, "ABCDE");
    EXPECT_EQ(now() - start, 50);
    link->openPort();
    port.setDrainMsPerByte(-1);  // a stalled line
    link->write("stuck");
    start = now();
    link->closePort();
    EXPECT_EQ(now() - start, kDrainBoundMs);
    EXPECT_TRUE(!link->isPortOpen() && view.boxes.empty());
}

TEST_F(LinkTest, HangUpPausesAroundTheEscapeWhileInputFlows) {
    make(kAsciiLink);
    link->hangUpPort();  // closed: nothing, no time
    EXPECT_EQ(now(), 0);
    link->openPort();
    dispatch.postAt(700, [&] { port.deliver("in"); });
    const long long start = now();
    link->hangUpPort();
    EXPECT_EQ(now() - start, 3000);
    EXPECT_EQ(port.writes, (std::vector<std::string>{"+++", "ATH\r"}));
    EXPECT_TRUE(link->isPortOpen());
    EXPECT_EQ(tavo.totalChars, 2);  // received during the pause
}

// The feed of the sign preview and the web mirror: what went out on the line,
// modem commands included, and nothing a closed port refused (that gets the
// reminder instead); each tap until it is taken off.
TEST_F(LinkTest, TapSeesTheBytesThatWentOnTheLineAndNoticesLastFiveSeconds) {
    struct Tap : WriteTap {
        void written(const std::string& bytes) override { seen += bytes; }
        std::string seen;
    } tap, other;
    make(kDisplayLink);
    link->addTap(tap);
    link->addTap(other);
    link->write("refused");
    EXPECT_EQ(view.notice, kOpenPortFirst);
    link->openPort();
    link->write("frame");
    link->dial("555");
    link->removeTap(tap);
    link->write("after");
    EXPECT_EQ(tap.seen, "frameatdt555\r");
    EXPECT_EQ(other.seen, "frameatdt555\rafter");
    // A notice lasts five seconds and a new one starts them again.
    tone.tones.clear();
    link->showNotice(true, "Toggle front/back");
    EXPECT_EQ(tone.tones, (std::vector<std::pair<int, int>>{{740, 250}, {400, 250}}));
    dispatch.advance(3000);
    link->showNotice(true, "Open port first.");
    dispatch.advance(4999);
    EXPECT_EQ(view.notice, "Open port first.");
    dispatch.advance(1);
    EXPECT_EQ(view.notice, "");
    dispatch.advance(20000);  // the timer stopped: nothing else happens
    EXPECT_EQ(tone.tones.size(), 4u);
}

// A sender faster than the reader: several rings' worth in one go.
TEST_F(LinkTest, BurstOfSeveralRingsReachesTheFilterWholeAndInOrder) {
    openLink(kL21Link);
    testing::Log log;
    testing::FakeFilter filter("decoder", log);
    tavo.frmL21Serial = &filter;
    tavo.bInL21Serial = true;
    std::string burst;
    for (int i = 0; i < 5000; ++i) burst += static_cast<char>(' ' + i % 90);
    port.deliver(burst);
    for (int turn = 0; turn < 50 && filter.received.size() < burst.size(); ++turn) tavo.pollInput();
    EXPECT_EQ(filter.received, burst);
}

}  // namespace
}  // namespace zelvan
