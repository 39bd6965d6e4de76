// The display console without its window, on virtual time and a fake port,
// read back off the sign model.

#include <gtest/gtest.h>

#include "display/console.h"
#include "display/signmodel.h"
#include "support/displayfakes.h"
#include "support/fakeserialport.h"
#include "support/logicframes.h"
#include "support/recordinglinkview.h"

namespace zelvan {
namespace {

using testing::esc;

struct ConsoleTest : ::testing::Test {
    testing::Rig rig;
    FakeSerialPort port{rig.dispatch};
    testing::RecordingLinkView linkView;
    testing::RecordingConsoleView view;
    DisplayConsole console{rig.tavo, port, linkView, view};

    ConsoleTest() {
        rig.tavo.view = &rig.view();
        rig.tavo.splitStartupBarker();
        console.formLoad();
    }
    void open() {
        console.cmdPortOutOpen_Click();
        rig.dispatch.yield();
        ASSERT_TRUE(console.isPortOpen());
    }
    bool frontBoard() const {
        SignModel s;
        for (const std::string& w : port.writes) s.feed(w);
        return s.frontBoard;
    }
};

// Halves round to even; the box never moves the scroll bar, yet Sunrise sets
// three rows even though the bar already reads three.
TEST_F(ConsoleTest, LinesBoxPullsOutOfRangeTextBackIntoOneToThree) {
    struct Case {
        const char *typed, *shown;
        int lines;
    };
    for (const Case& c :
         {Case{"4", "3", 3}, Case{"1", "1", 1}, Case{"", "1", 1}, Case{"-5", "1", 1},
          Case{" 2.6", " 2.6", 3}, Case{"2.51", "2.51", 3}, Case{"99999999999999999999", "3", 3}}) {
        console.setLinesText("2");
        console.setLinesText(c.typed);
        EXPECT_EQ(view.linesText, c.shown) << c.typed;
        EXPECT_EQ(console.engine().iLines, c.lines) << c.typed;
    }
    console.setLinesText("1");
    EXPECT_EQ(console.scrollLines(), 3);
    console.setBox(ConsoleBox::Sunrise, true);
    EXPECT_EQ(console.scrollLines(), 3);
    EXPECT_EQ(console.engine().iLines, 3);
    EXPECT_EQ(console.linesText(), "3");
}

TEST_F(ConsoleTest, ShowFormRunsTheFilterUntilOpenClosesItAndHideFormLowersTheFlag) {
    console.setBox(ConsoleBox::Reverse, false);  // left so by an earlier showing
    console.setBox(ConsoleBox::Sunrise, true);
    console.showForm();
    EXPECT_EQ(view.steps, "place show ");
    // Ticked: the carrier switch, input, the filter and reversed text.
    EXPECT_EQ(view.boxes, (std::array<bool, kConsoleBoxes>{true, true, true, true, false, false}));
    EXPECT_EQ(view.filter, std::string(kCaptionStopFilter) + "/255");
    console.cmdPortOutOpen_Click();
    EXPECT_FALSE(console.isPortOpen() || console.engine().bFilterOn);
    EXPECT_EQ(view.filter, std::string(kCaptionStartFilter) + "/0");
    EXPECT_TRUE(rig.tone.tones.empty());  // a plain close says nothing

    // At shutdown the main window's box goes to 0, and that runs its click.
    testing::ConsoleOutput window(console);
    rig.console();
    rig.view().outDW = 1;
    rig.tavo.frmOutDW = &window;
    rig.tavo.bOutDW = true;
    const std::string shown = view.steps;
    console.hideForm();
    EXPECT_EQ(rig.view().outDW, 0);
    EXPECT_TRUE(!rig.tavo.bOutDW && !rig.tavo.frmOutDW);
    EXPECT_NE(view.steps.find("hide", shown.size()), std::string::npos);
}

TEST_F(ConsoleTest, ShowFormOnAFailingPortTellsOnceThenRemindsPerFrame) {
    port.failNextOpen();
    console.showForm();
    EXPECT_EQ(linkView.boxes.size(), 1u);
    EXPECT_FALSE(console.engine().bFilterOn);
    // The filter box's reminder, then one per frame of the startup caption
    // (three cleared rows, three lines); each a double beep.
    EXPECT_EQ(linkView.notice, kOpenPortFirst);
    EXPECT_EQ(rig.tone.tones.size(), 14u);
}

// A lost device stops the output, so captions don't beep once per frame; the
// device back, Open runs the filter again unless the operator had stopped it.
TEST_F(ConsoleTest, LostPortStopsTheFilterUntilTheDeviceIsBack) {
    open();
    console.setBox(ConsoleBox::Filter, true);
    port.vanish();
    rig.dispatch.yield();
    EXPECT_FALSE(console.box(ConsoleBox::Filter));
    testing::RowsFilter filter;
    filter.rows[15] = "HELLO";
    rig.tavo.bInTDS = true;
    rig.tavo.frmInTDS = &filter;
    for (std::int16_t style : {kStyleRows, kStyleLineEnded}) console.doInput(style, "");
    EXPECT_TRUE(rig.tone.tones.empty());
    EXPECT_EQ(view.pending, "HELLO");
    port.failNextOpen();  // still gone
    for (int press = 0; press < 2; ++press) console.cmdPortOutOpen_Click();
    EXPECT_TRUE(console.box(ConsoleBox::Filter));
    console.setBox(ConsoleBox::Filter, false);
    port.vanish();
    rig.dispatch.yield();
    console.cmdPortOutOpen_Click();
    EXPECT_FALSE(console.box(ConsoleBox::Filter));
}

// The operator types a whole frame in the notation; without text or a
// running filter nothing happens, and nothing is said.
TEST_F(ConsoleTest, NotationIsEscapedByTheButtonAndSentOnlyWhileTheFilterRuns) {
    open();
    console.setPendingText("abc");
    console.cmdSendIt_Click();
    console.setBox(ConsoleBox::Filter, true);
    console.setPendingText("");
    console.cmdSendIt_Click();
    EXPECT_TRUE(port.writes.empty());
    console.setPendingText(esc("^01^20^7F ^01"));
    console.cmdSendIt_Click();
    EXPECT_EQ(port.writes,
              (std::vector<std::string>{testing::bytes({0x01, 0x20, 0x7F, 0x20, 0x01})}));
    EXPECT_TRUE(rig.tone.tones.empty());
    // The escape byte goes over the selection, or at the end past it.
    console.setPendingText("ab01");
    EXPECT_EQ(console.cmdLuckyCharm_Click(1, 1), 2u);
    EXPECT_EQ(view.pending, esc("a^01"));
    EXPECT_EQ(console.cmdLuckyCharm_Click(9, 9), 5u);
    EXPECT_EQ(view.pending, esc("a^01^"));
}

// After the second the event is re-armed once: a box unticked later stays off.
TEST_F(ConsoleTest, CarrierBouncingWithinASecondSwitchesTheBoardOnce) {
    open();
    port.setCarrier(true);
    rig.dispatch.yield();
    port.setCarrier(false);
    rig.dispatch.advance(500);
    EXPECT_FALSE(frontBoard());
    EXPECT_EQ(linkView.notice, kToggleBoardNotice);
    rig.dispatch.advance(kDebounceCDMs);
    port.setCarrier(true);
    rig.dispatch.yield();
    EXPECT_TRUE(frontBoard());
    rig.dispatch.advance(kDebounceCDMs);
    console.setBox(ConsoleBox::RevOnCD, false);
    rig.dispatch.advance(3 * kDebounceCDMs);
    port.setCarrier(false);
    rig.dispatch.yield();
    EXPECT_EQ(port.writes.size(), 2u);
}

}  // namespace
}  // namespace zelvan
