// The splash: a key ends the start-up wait at once.

#include <gtest/gtest.h>
#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
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

}  // namespace
}  // namespace zelvan
