// The sign preview window on a display link over the fake port: it follows
// what the link writes on its own timer, and keeps its size and place.

#include <gtest/gtest.h>

#include "display/frmsignpreview.h"
#include "support/fakeserialport.h"
#include "support/qtrig.h"
#include "support/recordinglinkview.h"

namespace zelvan {
namespace {

using testing::waitFor;

struct SignPreviewWindowTest : ::testing::Test, testing::QtRig {
    FakeSerialPort port{dispatch};
    testing::RecordingLinkView view;
    SerialLink link{kDisplayLink, port, tavo, view};
};

TEST_F(SignPreviewWindowTest, FollowsTheLinkOnItsOwnTimerAndKeepsItsPlace) {
    const auto stored = [&](const char* key) { return store.get("SignPreview", key, ""); };
    for (auto [key, value] :
         {std::pair{"left", "40"}, {"top", "50"}, {"width", "700"}, {"height", "300"}})
        store.set("SignPreview", key, value);
    link.openPort();
    auto window = std::make_unique<frmSignPreview>(link, store);
    EXPECT_EQ(window->geometry(), QRect(40, 50, 700, 300));

    link.write(std::string("\x01\x20\x7F\x2F\x01", 5));  // dim
    EXPECT_TRUE(waitFor([&] { return window->statusText().contains(QStringLiteral("dim")); }));

    window->show();
    window->resize(640, 280);
    window->move(10, 20);
    EXPECT_TRUE(waitFor([&] { return stored("left") == "10" && stored("top") == "20"; }));
    EXPECT_EQ(stored("width") + "x" + stored("height"), "640x280");

    window.reset();
    link.write("after the window went");  // the tap went with it
    EXPECT_EQ(port.writes.size(), 2u);
}

}  // namespace
}  // namespace zelvan
