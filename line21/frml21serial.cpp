#include "line21/frml21serial.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "core/windowplace.h"
#include "platform/qtext.h"
#include "platform/qtmessagebox.h"
#include "support/frmserialconfig.h"

namespace zelvan {

frmL21Serial::frmL21Serial(Tavo& tavo, InL21& memory, Shell& shell)
    : QWidget(nullptr, Qt::Window),
      panes(this),
      m_shell(shell),
      SerialPort(tavo.dispatch(), tavo.store()) {
    setObjectName(QStringLiteral("frmL21Serial"));
    setWindowTitle(QString::fromLatin1(kL21SerialTitle));
    buildControls();
    // The logic sets the captions as it starts, so the controls come first.
    m_input = std::make_unique<L21SerialInput>(tavo, memory, SerialPort, *this);
    bindControls();
    // At load the window keeps the size it has: it can't be resized.
    setFixedSize(sizeHint());
}

frmL21Serial::~frmL21Serial() = default;

void frmL21Serial::buildControls() {
    cmdPortSetup = makeButton(this, "cmdPortSetup", "");
    // Wide enough for the longest settings text the setup window can give.
    cmdPortSetup->setMinimumWidth(
        cmdPortSetup->fontMetrics().horizontalAdvance(QStringLiteral("8:115200,e,8,1.5")) + 24);
    cmdPortOpen = makeButton(this, "cmdPortOpen", kCaptionOpen);
    // Dialling, the reminder, the channel list and Command1 are there but
    // out of sight.
    tbDial = new QLineEdit(QString::fromLatin1(kDefaultDialText), this);
    tbDial->setObjectName(QStringLiteral("tbDial"));
    cmdPortDial = makeButton(this, "cmdPortDial", "Dial");
    cmdPortHangup = makeButton(this, "cmdPortHangup", "Hang");
    lblOpenPortDummy = new QLabel(QStringLiteral("Open the port!"), this);
    lblOpenPortDummy->setObjectName(QStringLiteral("lblOpenPortDummy"));
    lblNotice = makeNoticeLabel(this);
    Command1 = makeButton(this, "Command1", "Command1");
    for (QWidget* w : std::initializer_list<QWidget*>{tbDial, cmdPortDial, cmdPortHangup,
                                                      lblOpenPortDummy, Command1})
        w->hide();
    layOutControls();
}

// The port and the bank-wide buttons on top; below, the two banks side by
// side, each with its test buttons underneath.
void frmL21Serial::layOutControls() {
    auto* port = new QHBoxLayout;
    port->addWidget(cmdPortSetup);
    port->addWidget(cmdPortOpen);
    port->addStretch();
    port->addWidget(panes.cmdFlip);
    port->addWidget(panes.cmdInit);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(port);
    layout->addWidget(lblNotice);
    layout->addLayout(panes.banksLayout());
}

void frmL21Serial::bindControls() {
    L21SerialInput* in = m_input.get();
    connect(cmdPortSetup, &QPushButton::clicked, this, [this] { cmdPortSetup_Click(); });
    connect(cmdPortOpen, &QPushButton::clicked, this, [in] { in->cmdPortOpen_Click(); });
    connect(cmdPortDial, &QPushButton::clicked, this,
            [this, in] { in->cmdPortDial_Click(fromQString(tbDial->text())); });
    connect(cmdPortHangup, &QPushButton::clicked, this, [in] { in->cmdPortHangup_Click(); });
    panes.bind(*in);
    connect(Command1, &QPushButton::clicked, this, [in] { in->Command1_Click(); });
    // F1 anywhere in the window, before any control sees the key.
    new QShortcut(QKeySequence(Qt::Key_F1), this, [this] { m_shell.showHelp(); });
}

// A new setup window at each click, modeless; the one before goes. OK
// applies its choice to the link, which renews the button's caption.
void frmL21Serial::cmdPortSetup_Click() {
    SerialLink& link = m_input->link();
    m_setup = std::make_unique<frmSerialConfig>(link.currentSetup(), link.store());
    frmSerialConfig* setup = m_setup.get();
    connect(setup, &QDialog::accepted, this, [&link, setup] { link.applySetup(setup->choice()); });
    m_setup->show();
}

void frmL21Serial::messageBox(const std::string& text, const std::string& detail) {
    showMessageBox(this, text, detail);
}

void frmL21Serial::alert(const std::string& text, const std::string& detail) {
    showAlertBox(this, text, detail);
}

void frmL21Serial::setOpenCaption(const std::string& caption) {
    cmdPortOpen->setText(toQString(caption));
}

void frmL21Serial::setSetupCaption(const std::string& text, const std::string& refusal) {
    cmdPortSetup->setText(toQString(text));
    cmdPortSetup->setToolTip(toQString(refusal));
}

void frmL21Serial::showReminder(bool visible) {
    lblOpenPortDummy->setVisible(visible);
}

void frmL21Serial::setNotice(const std::string& text) {
    lblNotice->setText(toQString(text));
}

void frmL21Serial::placeWindow() {
    placeUnderMainWindow(this);
}

// Modeless, kept above the main window by the window manager; the main
// window doesn't own the object, the console does.
void frmL21Serial::showWindow() {
    showOwnedByMainWindow(this);
}

void frmL21Serial::hideWindow() {
    hide();
}

// The operator can't close it; only hideForm takes it away.
void frmL21Serial::closeEvent(QCloseEvent* e) {
    e->ignore();
}

}  // namespace zelvan
