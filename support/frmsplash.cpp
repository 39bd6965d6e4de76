#include "support/frmsplash.h"

#include <QEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
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
    inner->addWidget(makeLogo(frame));
    inner->addWidget(lblProductName);
    inner->addWidget(lblVersion);
    inner->addWidget(lblPlatform);
    auto* outer = new QVBoxLayout(this);
    outer->addWidget(frame);
    for (QWidget* w : {static_cast<QWidget*>(frame), static_cast<QWidget*>(lblVersion),
                       static_cast<QWidget*>(lblPlatform)})
        w->installEventFilter(this);
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
    if (e->type() == QEvent::MouseButtonRelease) {
        close();
        return true;
    }
    return QDialog::eventFilter(watched, e);
}

}  // namespace zelvan
