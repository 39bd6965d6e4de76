// The ASCII serial window's rules over a fake port on virtual time: shown
// with its port closed, opened by the operator, and gone with its port
// closed and its section saved. The road of the text is in the window tests.

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

    AsciiInputTest() {
        rig.console();
        rig.tavo.frmInAscii = &input;
        rig.tavo.bInAscii = true;
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

}  // namespace
}  // namespace zelvan
