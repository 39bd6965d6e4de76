// The display console without its window, on virtual time and a fake port:
// the lines box, the filter box, the window coming up and going down,
// hand-made frames and the carrier board switch, read back off the sign model.

#include <gtest/gtest.h>

#include "display/console.h"
#include "display/signmodel.h"
#include "support/displayfakes.h"
#include "support/fakeserialport.h"
#include "support/recordinglinkview.h"

namespace zelvan {
namespace {

using testing::bytes;
using testing::esc;

struct RecordingConsoleView : ConsoleView {
    void showBox(ConsoleBox box, bool ticked) override {
        boxes[static_cast<std::size_t>(box)] = ticked;
    }
    void showFilterCaption(const std::string& caption, int colour) override {
        filter = caption + "/" + std::to_string(colour);
    }
    void showScrollLines(int) override {}
    void showLinesText(const std::string& text) override { linesText = text; }
    void showPending(const std::string& text) override { pending = text; }
    void placeWindow() override { steps.push_back("place"); }
    void showWindow() override { steps.push_back("show"); }
    void hideWindow() override { steps.push_back("hide"); }

    std::array<bool, kConsoleBoxes> boxes{};
    std::string filter, linesText, pending;
    std::vector<std::string> steps;
};

const std::string kFilterRunning = std::string(kCaptionStopFilter) + "/255";
const std::string kFilterStopped = std::string(kCaptionStartFilter) + "/0";

struct ConsoleTest : ::testing::Test {
    testing::Rig rig;
    FakeSerialPort port{rig.dispatch};
    testing::RecordingLinkView linkView;
    RecordingConsoleView view;
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
    SignModel sign() const {
        SignModel s;
        for (const std::string& w : port.writes) s.feed(w);
        return s;
    }
};

TEST_F(ConsoleTest, LinesBoxPullsOutOfRangeTextBackIntoOneToThree) {
    struct Case {
        const char* typed;
        const char* shown;
        int lines;
    };
    for (const Case& c :
         {Case{"4", "3", 3}, Case{"1", "1", 1}, Case{"2", "2", 2}, Case{"", "1", 1},
          Case{"-5", "1", 1}, Case{" 2.6", " 2.6", 3}, Case{"99999999999999999999", "3", 3}}) {
        console.setLinesText("2");
        console.setLinesText(c.typed);
        EXPECT_EQ(view.linesText, c.shown) << c.typed;
        EXPECT_EQ(console.engine().iLines, c.lines) << c.typed;
    }
    EXPECT_EQ(console.scrollLines(), 3);  // the box never moves the scroll bar
}

// Typing lowered the rows while the bar still reads 3: Sunrise sets three.
TEST_F(ConsoleTest, SunriseSetsThreeRowsEvenWhenTheBarAlreadyReadsThree) {
    console.setLinesText("1");
    ASSERT_EQ(console.scrollLines(), 3);
    console.setBox(ConsoleBox::Sunrise, true);
    EXPECT_EQ(console.engine().iLines, 3);
    EXPECT_EQ(console.linesText(), "3");
}

// The startup caption's frames and the window's captions are read back in
// the display window's own tests.
TEST_F(ConsoleTest, ShowFormRunsTheFilterRedUntilTheOpenButtonClosesItFirst) {
    rig.store.set("DWPort", "port", "4");
    console.showForm();
    EXPECT_EQ(view.steps, (std::vector<std::string>{"place", "show"}));
    EXPECT_EQ(port.port(), 4);
    // Ticked: the carrier switch, input, the filter and reversed text.
    EXPECT_EQ(view.boxes, (std::array<bool, kConsoleBoxes>{true, true, true, true, false, false}));
    EXPECT_EQ(view.filter, kFilterRunning);
    console.cmdPortOutOpen_Click();
    EXPECT_FALSE(console.isPortOpen());
    EXPECT_FALSE(console.engine().bFilterOn);
    EXPECT_EQ(view.filter, kFilterStopped);
    EXPECT_TRUE(rig.tone.tones.empty());  // a plain close says nothing
}

// A lost device stops the output, so captions don't beep once per frame.
TEST_F(ConsoleTest, LostPortStopsTheFilterAndCaptionsStaySilent) {
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
}

TEST_F(ConsoleTest, ShowFormOnAFailingPortTellsOnceThenRemindsPerFrame) {
    port.failNextOpen();
    console.showForm();
    EXPECT_EQ(linkView.boxes.size(), 1u);
    EXPECT_FALSE(view.boxes[static_cast<std::size_t>(ConsoleBox::Filter)]);
    EXPECT_FALSE(console.engine().bFilterOn);
    EXPECT_EQ(linkView.notice, kOpenPortFirst);
    // The filter box's reminder, then one per frame: three cleared rows and
    // three caption lines; each a double beep.
    EXPECT_EQ(rig.tone.tones.size(), 14u);
    EXPECT_TRUE(port.writes.empty());
}

// At shutdown the main window's box goes to 0, and that runs its click.
TEST_F(ConsoleTest, HideFormUnticksTheMainBoxWhichLowersTheOutputFlag) {
    struct Window : DisplayOutput {
        explicit Window(DisplayConsole& c) : c(c) {}
        void showForm() override {}
        void hideForm() override { c.hideForm(); }
        void doInput(std::int16_t, const std::string&) override {}
        void showStartupBarker(bool) override {}
        void DWErase() override {}
        DisplayConsole& c;
    } window(console);
    rig.console();
    rig.view().outDW = 1;
    rig.tavo.frmOutDW = &window;
    rig.tavo.bOutDW = true;
    console.hideForm();
    EXPECT_EQ(rig.view().outDW, 0);
    EXPECT_FALSE(rig.tavo.bOutDW);
    EXPECT_EQ(rig.tavo.frmOutDW, nullptr);
    EXPECT_EQ(view.steps.back(), "hide");
}

// The operator types a whole frame in the notation; without text or a
// running filter nothing happens, and nothing is said.
TEST_F(ConsoleTest, SendItPassesTheNotationStraightThroughOnlyWhileTheFilterRuns) {
    open();
    console.setPendingText("abc");
    console.cmdSendIt_Click();
    console.setBox(ConsoleBox::Filter, true);
    console.setPendingText("");
    console.cmdSendIt_Click();
    EXPECT_TRUE(port.writes.empty());
    console.setPendingText(esc("^01^20^7F ^01"));
    console.cmdSendIt_Click();
    EXPECT_EQ(port.writes, (std::vector<std::string>{bytes({0x01, 0x20, 0x7F, 0x20, 0x01})}));
    EXPECT_TRUE(rig.tone.tones.empty());
}

// The escape byte goes over the selection, or at the end past it.
TEST_F(ConsoleTest, LuckyCharmPutsTheEscapeOverTheSelectionAndShowsIt) {
    console.setPendingText("ab01");
    EXPECT_EQ(console.cmdLuckyCharm_Click(1, 1), 2u);
    EXPECT_EQ(view.pending, esc("a^01"));
    EXPECT_EQ(console.cmdLuckyCharm_Click(9, 9), 5u);
    EXPECT_EQ(view.pending, esc("a^01^"));
}

// Line breaks go out as they stand; only a line longer than the row is cut.
TEST_F(ConsoleTest, SendAtKeepsEveryLineOfAMultiLineText) {
    open();
    console.setBox(ConsoleBox::Reverse, false);
    const std::string first(20, 'a'), second(20, 'b'), third(40, 'c');
    console.setPendingText(first + "\r\n" + second + "\r\n" + third);
    console.cmdSendAt_Click();
    ASSERT_EQ(port.writes.size(), 1u);
    EXPECT_EQ(port.writes[0], bytes({1, 0x20, 0x1F + 3, 0x20}) + first + "\r\n" + second + "\r\n" +
                                  std::string(32, 'c') + "\x01");
}

TEST_F(ConsoleTest, CarrierBouncingWithinASecondSwitchesTheBoardOnce) {
    open();
    port.setCarrier(true);
    rig.dispatch.yield();
    port.setCarrier(false);
    rig.dispatch.advance(500);
    EXPECT_EQ(port.writes.size(), 1u);
    EXPECT_FALSE(sign().frontBoard);
    EXPECT_EQ(linkView.notice, kToggleBoardNotice);
    rig.dispatch.advance(kDebounceCDMs);
    port.setCarrier(true);
    rig.dispatch.yield();
    EXPECT_TRUE(sign().frontBoard);
}

}  // namespace
}  // namespace zelvan
