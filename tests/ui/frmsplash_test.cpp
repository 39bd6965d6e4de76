// The splash: a key ends the start-up wait at once; the About box has no limit.

#include <gtest/gtest.h>
#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLabel>
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

TEST(Splash, TheAboutBoxHasNoTimeLimitAndShowsTheVersion) {
    frmSplash about;
    about.show();
    EXPECT_FALSE(about.timerSplashGoAway.isActive());
    EXPECT_EQ(about.windowTitle(), QStringLiteral("About QintraZelvan"));
    bool versionShown = false;
    for (auto* label : about.findChildren<QLabel*>())
        versionShown |= label->text() == QStringLiteral("Version 1.0.0");
    EXPECT_TRUE(versionShown);
}

}  // namespace
}  // namespace zelvan
