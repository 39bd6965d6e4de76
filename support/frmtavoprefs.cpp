#include "support/frmtavoprefs.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QShortcut>
#include <QTabWidget>

#include "core/mainview.h"
#include "platform/qtext.h"

namespace zelvan {

namespace {
constexpr int kWidth = 420;
constexpr int kHeight = 370;
}  // namespace

frmTavoPrefs::frmTavoPrefs(Tavo& tavo, Shell& shell, QWidget* parent)
    : QDialog(parent), m_form(tavo), m_shell(shell) {
    setObjectName(QStringLiteral("frmTavoPrefs"));
    setWindowTitle(QStringLiteral("Preferences"));
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(false);
    buildControls();
    setFixedSize(kWidth, kHeight);
    centre();
    m_form.formLoad();
    show_();
    bind();
}

void frmTavoPrefs::buildControls() {
    tbsOptions = new QTabWidget(this);
    tbsOptions->setObjectName(QStringLiteral("tbsOptions"));
    tbsOptions->setGeometry(8, 8, kWidth - 16, kHeight - 56);
    auto* page = new QWidget;
    tbsOptions->addTab(page, QStringLiteral("General"));
    tbsOptions->setTabToolTip(0, QStringLiteral("Set General Preferences"));

    chkBeepOnMessage = new QCheckBox(QStringLiteral("Beep on message display"), page);
    chkBeepOnMessage->setObjectName(QStringLiteral("chkBeepOnMessage"));
    chkBeepOnMessage->setGeometry(12, 10, 360, 22);
    chkStartupBarker = new QCheckBox(QStringLiteral("Show startup caption"), page);
    chkStartupBarker->setObjectName(QStringLiteral("chkStartupBarker"));
    chkStartupBarker->setGeometry(12, 38, 360, 22);
    tbStartupBarker = new QLineEdit(page);
    tbStartupBarker->setObjectName(QStringLiteral("tbStartupBarker"));
    tbStartupBarker->setGeometry(32, 62, 350, 24);
    chkObfuscate = new QCheckBox(QStringLiteral("Wacky Output"), page);
    chkObfuscate->setObjectName(QStringLiteral("chkObfuscate"));
    chkObfuscate->setGeometry(12, 96, 160, 22);
    lbObfuscateType = new QListWidget(page);
    lbObfuscateType->setObjectName(QStringLiteral("lbObfuscateType"));
    lbObfuscateType->addItem(QStringLiteral("Dis ain't wocket science!"));
    lbObfuscateType->setGeometry(32, 120, 350, 28);

    Label1 = new QLabel(QStringLiteral("On Exit:"), page);
    Label1->setGeometry(12, 160, 100, 20);
    const char* names[] = {"rbExitDispNOP", "rbExitDispSTB", "rbExitDispCLS"};
    const char* captions[] = {"Do Nothing", "Startup caption", "Clear"};
    auto* group = new QButtonGroup(this);
    for (int i = 0; i < 3; ++i) {
        rbExitDisp[i] = new QRadioButton(QString::fromLatin1(captions[i]), page);
        rbExitDisp[i]->setObjectName(QString::fromLatin1(names[i]));
        rbExitDisp[i]->setGeometry(32, 182 + 24 * i, 200, 22);
        group->addButton(rbExitDisp[i], i);
    }
    // A set button by mouse, key or a screen reader's toggle alike.
    connect(group, &QButtonGroup::idToggled, this, [this](int id, bool on) {
        if (on) m_form.rbExitDisp_Click(id);
    });

    const int buttonTop = kHeight - 40;
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setGeometry(kWidth - 3 * 96, buttonTop, 88, 30);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setGeometry(kWidth - 2 * 96, buttonTop, 88, 30);
    cmdApply = new QPushButton(QStringLiteral("Apply"), this);
    cmdApply->setObjectName(QStringLiteral("cmdApply"));
    cmdApply->setGeometry(kWidth - 96, buttonTop, 88, 30);
    cmdOK->setAutoDefault(false);
    cmdCancel->setAutoDefault(false);
    cmdApply->setAutoDefault(false);
}

void frmTavoPrefs::centre() {
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    move((screen.width() - width()) / 2, (screen.height() - height()) / 2);
}

void frmTavoPrefs::show_() {
    const PrefsControls& c = m_form.c;
    const QSignalBlocker b1(chkBeepOnMessage), b2(chkStartupBarker), b3(chkObfuscate),
        b4(lbObfuscateType), b5(tbStartupBarker), b6(rbExitDisp[0]->group());
    chkBeepOnMessage->setChecked(c.chkBeepOnMessage == 1);
    chkStartupBarker->setChecked(c.chkStartupBarker == 1);
    if (tbStartupBarker->text() != toQString(c.tbStartupBarker))
        tbStartupBarker->setText(toQString(c.tbStartupBarker));
    tbStartupBarker->setEnabled(c.tbStartupBarkerEnabled);
    for (int i = 0; i < 3; ++i) rbExitDisp[i]->setChecked(c.exitOption == i);
    chkObfuscate->setChecked(c.chkObfuscate == 1);
    lbObfuscateType->setVisible(c.lbObfuscateTypeVisible);
    lbObfuscateType->setCurrentRow(c.lbObfuscateTypeIndex);
}

// Each control hands its change to the form, and the window shows the form's
// state again; the boxes' signals fire only on a change, as their clicks do.
void frmTavoPrefs::bind() {
    connect(chkBeepOnMessage, &QCheckBox::toggled, this,
            [this](bool on) { m_form.setBeepBox(on ? 1 : 0); });
    connect(chkStartupBarker, &QCheckBox::toggled, this, [this](bool on) {
        m_form.setStartupBarkerBox(on ? 1 : 0);
        show_();
    });
    connect(tbStartupBarker, &QLineEdit::textChanged, this,
            [this](const QString& text) { m_form.setCaptionText(fromQString(text)); });
    connect(chkObfuscate, &QCheckBox::toggled, this, [this](bool on) {
        m_form.setObfuscateBox(on ? 1 : 0);
        show_();
    });
    connect(lbObfuscateType, &QListWidget::currentRowChanged, this,
            [this](int row) { m_form.lbObfuscateType_Click(row); });
    connect(cmdApply, &QPushButton::clicked, this, [this] { m_form.applyPrefs(); });
    connect(cmdOK, &QPushButton::clicked, this, [this] {
        m_form.applyPrefs();
        accept();
    });
    // Cancel and Escape close without applying; the window goes with them.
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    new QShortcut(QKeySequence(Qt::Key_F1), this, [this] { m_shell.showHelp(); });
    // With the single tab, the next tab is the same one: it is reselected.
    new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Tab), this, [this] {
        tbsOptions->setCurrentIndex((tbsOptions->currentIndex() + 1) % tbsOptions->count());
    });
}

}  // namespace zelvan
