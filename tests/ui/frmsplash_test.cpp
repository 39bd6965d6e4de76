// The splash: a key ends the start-up wait at once.

#include <gtest/gtest.h>
#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>

#include "support/frmsplash.h"

namespace zelvan {
namespace {

TEST(Splash, AKeyEndsTheStartUpWaitAtOnce) {
    frmSplash splash;
    splash.timerSplashGoAway.setInterval(5000);
    splash.timerSplashGoAway.start();
    QTimer::singleShot(50, &splash, [&] {
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
        QApplication::sendEvent(&splash, &key);
    });
    QElapsedTimer clock;
    clock.start();
    splash.exec();
    EXPECT_LT(clock.elapsed(), 4000);
    EXPECT_FALSE(splash.isVisible());
}

// The about box: a left click on the frame, the version or the platform
// closes it; the title, the logo and other buttons leave it up.
TEST(About, OnlyALeftClickOnFrameVersionOrPlatformClosesIt) {
    frmSplash about;
    about.show();
    const auto click = [&](QWidget* w, Qt::MouseButton button) {
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(2, 2), w->mapToGlobal(QPointF(2, 2)),
                          button, button, Qt::NoModifier);
        QMouseEvent release(QEvent::MouseButtonRelease, QPointF(2, 2),
                            w->mapToGlobal(QPointF(2, 2)), button, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(w, &press);
        QApplication::sendEvent(w, &release);
    };
    const auto named = [&](const char* name) {
        return about.findChild<QWidget*>(QString::fromLatin1(name));
    };
    click(named("lblProductName"), Qt::LeftButton);
    click(named("imgLogo"), Qt::LeftButton);
    click(named("lblVersion"), Qt::RightButton);
    EXPECT_TRUE(about.isVisible());
    click(named("lblPlatform"), Qt::LeftButton);
    EXPECT_FALSE(about.isVisible());
}

}  // namespace
}  // namespace zelvan
