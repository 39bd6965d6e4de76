// The splash and About box: which clicks and keys put it away.

#include <gtest/gtest.h>
#include <QTest>

#include "support/frmsplash.h"

namespace zelvan {
namespace {

// A left click on the frame, the version or the platform closes the About box;
// the title, the logo and other buttons leave it up. A key ends the splash.
TEST(About, OnlyALeftClickOnFrameVersionOrPlatformOrAKeyClosesIt) {
    frmSplash about;
    about.show();
    const auto click = [&](const char* name, Qt::MouseButton button) {
        QTest::mouseClick(about.findChild<QWidget*>(QString::fromLatin1(name)), button);
    };
    click("lblProductName", Qt::LeftButton);
    click("imgLogo", Qt::LeftButton);
    click("lblVersion", Qt::RightButton);
    EXPECT_TRUE(about.isVisible());
    click("lblPlatform", Qt::LeftButton);
    EXPECT_FALSE(about.isVisible());
    about.show();
    QTest::keyClick(&about, Qt::Key_Space);
    EXPECT_FALSE(about.isVisible());
}

}  // namespace
}  // namespace zelvan
