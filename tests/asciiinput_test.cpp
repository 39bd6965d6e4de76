// The ASCII serial window's rules over a fake port on virtual time: the
// operator opens the port, text arrives and reaches the display line by
// line, and the window leaves with its port closed and its section saved.

#include <gtest/gtest.h>

#include "support/fakes.h"
#include "support/fakeserialport.h"
#include "support/recordinglinkview.h"
#include "textinput/asciiinput.h"

namespace zelvan {
namespace {

struct RecordingAsciiView : testing::RecordingLinkViewOf<AsciiView> {
    void placeWindow() override { calls.push_back("place"); }
    void showWindow() override { calls.push_back("show"); }
    void hideWindow() override { calls.push_back("hide"); }
    void setDMText(const std::string& text) override { dm = text; }
    void setWrapWidthText(const std::string& text) override { calls.push_back("width:" + text); }
    std::string dm;
};

struct AsciiInputTest : ::testing::Test {
    testing::Rig rig;
    FakeSerialPort port{rig.dispatch};
    RecordingAsciiView view;
    AsciiInput input{rig.tavo, port, view};
    testing::CaptionRecorder display{rig.tavo};

    AsciiInputTest() {
        rig.console();
        rig.tavo.frmInAscii = &input;
        rig.tavo.bInAscii = true;
        rig.tavo.frmOutDW = &display;
        rig.tavo.bOutDW = true;
    }
};

TEST_F(AsciiInputTest, ShowFormLeavesThePortClosedAndHideFormSavesItsSection) {
    rig.store.set("AsciiPort", "baud", "2400");
    input.showForm();
    EXPECT_EQ(view.calls, (std::vector<std::string>{"setup:1:9600,n,8,1", "place",
                                                    "setup:1:2400,n,8,1", "width:32", "show"}));
    EXPECT_EQ(rig.tavo.InputFilterType, 3);
    EXPECT_EQ(port.opens, 0);
    input.cmdPortDial_Click("555");
    EXPECT_TRUE(view.reminder);
    EXPECT_TRUE(port.writes.empty());

    rig.dispatch.postAt(10, [&] {
        EXPECT_TRUE(input.link().isPortOpen());
        input.hideForm();
    });
    rig.dispatch.postAt(20, [&] { rig.tavo.stopCapture(); });
    input.cmdPortOpen_Click();
    EXPECT_FALSE(input.link().isPortOpen());
    EXPECT_FALSE(view.reminder);
    EXPECT_EQ(view.calls.back(), "hide");
    EXPECT_EQ(rig.store.get("AsciiPort", "baud", ""), "2400");
    EXPECT_FALSE(rig.store.has("AsciiPort", "stopbits"));
}

// Lines end at CR, LF or any run of them; a long line wraps at its last word
// break; the row view follows every byte.
TEST_F(AsciiInputTest, TextFromThePortReachesTheDisplayLineByLine) {
    rig.tavo.rawQueueIn = 300;  // opening the port starts from an empty ring
    rig.dispatch.postAt(10, [&] { port.deliver("First\r\nSecond\n\nThird\rA line that"); });
    rig.dispatch.postAt(20, [&] { port.deliver(" is too long for one row\r\n\t"); });
    rig.dispatch.postAt(30, [&] {
        EXPECT_EQ(view.dm, TextRows().rowsAsText());
        port.deliver("Tail");
    });
    rig.dispatch.postAt(40, [&] { input.cmdPortOpen_Click(); });  // closes, stops capture
    input.cmdPortOpen_Click();
    EXPECT_EQ(display.captions,
              (std::vector<std::string>{"3: 1[First]", "3: 1[Second]", "3: 1[Third]",
                                        "3: 1[A line that is too long for]", "3: 1[one row]"}));
    EXPECT_EQ(view.dm.substr(0, 6), "Tail  ");
    EXPECT_EQ(view.dm.size(), 15u * 32 + 14 * 2);
    EXPECT_EQ(port.purges, 2);  // on open and on close
}

}  // namespace
}  // namespace zelvan
