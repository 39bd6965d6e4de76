// The display console without its window, on virtual time and a fake port:
// the defaults, the lines box, the filter box, the window's coming up and
// going down, hand-made frames and the carrier board switch. The sign model
// reads back what reached the display.

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
using testing::frameName;

struct RecordingConsoleView : ConsoleView {
    void showBox(ConsoleBox box, bool ticked) override {
        boxes[static_cast<std::size_t>(box)] = ticked;
    }
    void showFilterCaption(const std::string& caption, int colour) override {
        filterCaption = caption;
        filterColour = colour;
    }
    void showScrollLines(int value) override { scroll = value; }
    void showLinesText(const std::string& text) override { linesText = text; }
    void showPending(const std::string& text) override { pending = text; }
    void placeWindow() override { steps.push_back("place"); }
    void showWindow() override { steps.push_back("show"); }
    void hideWindow() override { steps.push_back("hide"); }

    std::array<bool, kConsoleBoxes> boxes{};
    std::string filterCaption = kCaptionStartFilter, linesText, pending;
    int filterColour = kColourBlack;
    int scroll = 0;
    std::vector<std::string> steps;
};

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
    std::string written() const {
        std::string all;
        for (const std::string& w : port.writes) all += w;
        return all;
    }
    std::vector<std::string> frames() const {
        std::vector<std::string> names;
        for (const std::string& w : port.writes) names.push_back(frameName(w));
        return names;
    }
    SignModel sign() const {
        SignModel s;
        s.feed(written());
        return s;
    }
    // Each notice sounds one double beep: two tones.
    std::size_t beeps() const { return rig.tone.tones.size() / 2; }
};

// --- the rows in use ---

TEST_F(ConsoleTest, LinesBoxPullsOutOfRangeTextBackIntoOneToThree) {
    struct Case {
        const char* typed;
        const char* shown;
        int lines;
    };
    for (const Case& c : {Case{"9", "3", 3}, Case{"0", "1", 1}, Case{"2", "2", 2}, Case{"", "1", 1},
                          Case{"x", "1", 1}, Case{"-5", "1", 1}, Case{" 2.6", " 2.6", 3},
                          Case{"99999999999999999999", "3", 3}}) {
        console.setLinesText("2");
        console.setLinesText(c.typed);
        EXPECT_EQ(view.linesText, c.shown) << c.typed;
        EXPECT_EQ(console.linesText(), c.shown) << c.typed;
        EXPECT_EQ(console.engine().iLines, c.lines) << c.typed;
    }
    EXPECT_EQ(console.scrollLines(), 3);  // the box never moves the scroll bar
}

// --- the filter box ---

TEST_F(ConsoleTest, FilterRunsRedWhileTheOpenButtonClosesItFirst) {
    open();
    console.setBox(ConsoleBox::Filter, true);
    EXPECT_TRUE(console.engine().bFilterOn);
    EXPECT_EQ(view.filterCaption, kCaptionStopFilter);
    EXPECT_EQ(view.filterColour, kColourRed);
    console.cmdPortOutOpen_Click();
    EXPECT_FALSE(console.isPortOpen());
    EXPECT_FALSE(console.box(ConsoleBox::Filter));
    EXPECT_EQ(view.filterCaption, kCaptionStartFilter);
    EXPECT_EQ(view.filterColour, kColourBlack);
    EXPECT_TRUE(rig.tone.tones.empty());  // a plain close says nothing
}

// A lost device stops the output, so captions don't beep once per frame.
TEST_F(ConsoleTest, LostPortStopsTheFilterAndCaptionsStaySilent) {
    open();
    console.setBox(ConsoleBox::Filter, true);
    port.vanish();
    rig.dispatch.yield();
    EXPECT_FALSE(console.box(ConsoleBox::Filter));
    EXPECT_FALSE(console.engine().bFilterOn);
    EXPECT_EQ(linkView.alerts.size(), 1u);
    testing::RowsFilter filter;
    filter.rows[15] = "HELLO";
    rig.tavo.bInTDS = true;
    rig.tavo.frmInTDS = &filter;
    for (std::int16_t style : {kStyleRows, kStyleLineEnded}) console.doInput(style, "");
    EXPECT_TRUE(rig.tone.tones.empty());
    EXPECT_EQ(view.pending, "HELLO");
}

// --- the window coming up and going down ---

TEST_F(ConsoleTest, ShowFormOpensThePortStartsOutputAndShowsTheCaption) {
    rig.store.set("DWPort", "port", "4");
    rig.store.set("DWPort", "baud", "19200");
    console.showForm();
    EXPECT_EQ(view.steps, (std::vector<std::string>{"place", "show"}));
    EXPECT_EQ(port.port(), 4);
    EXPECT_EQ(linkView.setupCaption, "4:19200,n,8,1");
    EXPECT_TRUE(console.isPortOpen());
    EXPECT_TRUE(console.engine().bFilterOn);
    EXPECT_TRUE(linkView.boxes.empty());
    const SignModel s = sign();
    EXPECT_EQ(s.rowThroughReflector(1).substr(0, 28), "Welcome to Halvane Captions.");
    EXPECT_EQ(s.rowThroughReflector(3).substr(0, 30), "The feature will start shortly");
    EXPECT_EQ(s.unknownFrames + s.strayBytes, 0) << s.dump();
    rig.dispatch.yield();
    EXPECT_EQ(linkView.openCaption, kCaptionClose);
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

TEST_F(ConsoleTest, ShowFormOnAFailingPortTellsOnceThenRemindsPerFrame) {
    port.failNextOpen();
    console.showForm();
    EXPECT_EQ(linkView.boxes.size(), 1u);
    EXPECT_EQ(linkView.boxes[0].rfind("Couldn't open port.|", 0), 0u);
    EXPECT_FALSE(console.box(ConsoleBox::Filter));
    EXPECT_FALSE(view.boxes[static_cast<std::size_t>(ConsoleBox::Filter)]);
    EXPECT_FALSE(console.engine().bFilterOn);
    EXPECT_EQ(view.filterCaption, kCaptionStartFilter);
    EXPECT_EQ(linkView.notice, kOpenPortFirst);
    // The filter box's reminder, then one per frame: three cleared rows and
    // three caption lines.
    EXPECT_EQ(beeps(), 7u);
    EXPECT_TRUE(port.writes.empty());
    rig.dispatch.advance(kNoticeMs);
    EXPECT_EQ(linkView.notice, "");
}

// --- hand-made frames ---

// The operator types a whole frame in the notation; without text or a
// running filter nothing happens, and nothing is said.
TEST_F(ConsoleTest, SendItPassesTheNotationStraightThroughOnlyWhileTheFilterRuns) {
    console.setPendingText("abc");
    console.cmdSendIt_Click();  // filter off, port closed: silent
    EXPECT_TRUE(rig.tone.tones.empty());
    open();
    console.cmdSendIt_Click();
    EXPECT_TRUE(port.writes.empty());
    console.setBox(ConsoleBox::Filter, true);
    console.setPendingText("");
    console.cmdSendIt_Click();
    EXPECT_TRUE(port.writes.empty());
    console.setPendingText(esc("^01^20^7F ^01"));
    console.cmdSendIt_Click();
    EXPECT_EQ(port.writes, (std::vector<std::string>{bytes({0x01, 0x20, 0x7F, 0x20, 0x01})}));
    console.setPendingText(esc("^"));
    console.cmdSendIt_Click();
    EXPECT_EQ(port.writes.back(), std::string(1, '\0'));
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

// Typing lowered the rows while the bar still reads 3: Sunrise sets three.
TEST_F(ConsoleTest, SunriseSetsThreeRowsEvenWhenTheBarAlreadyReadsThree) {
    console.setLinesText("1");
    ASSERT_EQ(console.scrollLines(), 3);
    console.setBox(ConsoleBox::Sunrise, true);
    EXPECT_EQ(console.engine().iLines, 3);
    EXPECT_EQ(console.linesText(), "3");
}

// --- the carrier board switch ---

TEST_F(ConsoleTest, CarrierBouncingWithinASecondSwitchesTheBoardOnce) {
    open();
    port.setCarrier(true);
    rig.dispatch.yield();
    port.setCarrier(false);
    rig.dispatch.advance(500);
    // The rear board, in its reversed-text form.
    EXPECT_EQ(port.writes, (std::vector<std::string>{bytes({0x01, 0x20, 0x7F, 0x7E, 0x28, 0x01})}));
    EXPECT_FALSE(sign().frontBoard);
    EXPECT_EQ(linkView.notice, kToggleBoardNotice);

    rig.dispatch.advance(kDebounceCDMs);
    EXPECT_TRUE(port.cdEvents());
    port.setCarrier(true);
    rig.dispatch.yield();
    EXPECT_EQ(port.writes.size(), 2u);
    EXPECT_TRUE(sign().frontBoard);
}

}  // namespace
}  // namespace zelvan
