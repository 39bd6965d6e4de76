#include "support/frmsplash.h"

#include <QEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QVBoxLayout>

namespace zelvan {

namespace {

QString versionText() {
    return QStringLiteral("Version %1.%2.%3")
        .arg(ZELVAN_VERSION_MAJOR)
        .arg(ZELVAN_VERSION_MINOR)
        .arg(ZELVAN_VERSION_PATCH);
}

// The logo: the sign's three rows of amber dots, drawn in text.
QLabel* makeLogo(QWidget* parent) {
    auto* logo = new QLabel(QStringLiteral("▮▮▮▮▮▮▮▮\n▮▮▮▮▮▮▮▮\n▮▮▮▮▮▮▮▮"), parent);
    logo->setObjectName(QStringLiteral("imgLogo"));
    logo->setStyleSheet(QStringLiteral("color: #d98e04; background: black; padding: 6px;"));
    return logo;
}

}  // namespace

frmSplash::frmSplash(QWidget* parent) : QDialog(parent) {
    setWindowTitle(QStringLiteral("About QintraZelvan"));
    setAttribute(Qt::WA_DeleteOnClose, false);
    auto* frame = new QGroupBox(this);
    frame->setObjectName(QStringLiteral("Frame1"));
    auto* inner = new QVBoxLayout(frame);
    lblProductName = new QLabel(QStringLiteral("Zelvan21"), frame);
    lblProductName->setStyleSheet(QStringLiteral("font-size: 20pt; font-weight: bold;"));
    lblVersion = new QLabel(versionText(), frame);
    lblPlatform = new QLabel(QStringLiteral("Windows"), frame);
    lblProductName->setObjectName(QStringLiteral("lblProductName"));
    lblVersion->setObjectName(QStringLiteral("lblVersion"));
    lblPlatform->setObjectName(QStringLiteral("lblPlatform"));
    inner->addWidget(makeLogo(frame));
    inner->addWidget(lblProductName);
    inner->addWidget(lblVersion);
    inner->addWidget(lblPlatform);
    auto* outer = new QVBoxLayout(this);
    outer->addWidget(frame);
    // A click closes the window on the frame, the version and the platform; one
    // on the title or the logo must not reach the frame below them.
    for (QWidget* w : {static_cast<QWidget*>(frame), static_cast<QWidget*>(lblVersion),
                       static_cast<QWidget*>(lblPlatform)})
        w->installEventFilter(this);
    for (QWidget* w : frame->findChildren<QWidget*>())
        if (w != lblVersion && w != lblPlatform) w->setAttribute(Qt::WA_NoMousePropagation);
    timerSplashGoAway.setTimerType(Qt::PreciseTimer);  // 5 s, not 4.75 or 5.25
    connect(&timerSplashGoAway, &QTimer::timeout, this, [this] { timerSplashGoAway_Timer(); });
}

void frmSplash::timerSplashGoAway_Timer() {
    timerSplashGoAway.stop();
    close();
}

void frmSplash::keyPressEvent(QKeyEvent*) {
    close();
}

bool frmSplash::eventFilter(QObject* watched, QEvent* e) {
    if (e->type() == QEvent::MouseButtonRelease &&
        static_cast<QMouseEvent*>(e)->button() == Qt::LeftButton) {
        close();
        return true;
    }
    return QDialog::eventFilter(watched, e);
}

}  // namespace zelvan
