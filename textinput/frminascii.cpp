#include "textinput/frminascii.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWindow>

#include "core/windowplace.h"
#include "platform/qtext.h"
#include "platform/qtmessagebox.h"
#include "support/frmserialconfig.h"

namespace zelvan {

namespace {

QWidget* mainWindow() {
    for (QWidget* top : QApplication::topLevelWidgets())
        if (top->objectName() == QLatin1String("frmTavo")) return top;
    return nullptr;
}

QPushButton* makeButton(QWidget* parent, const char* name, const char* caption) {
    auto* button = new QPushButton(QString::fromLatin1(caption), parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoDefault(false);
    return button;
}

// The row memory: 15 lines of 32 characters, read-only, no scroll bars.
QPlainTextEdit* makePane(QWidget* parent) {
    auto* pane = new QPlainTextEdit(parent);
    pane->setObjectName(QStringLiteral("rtbDM"));
    pane->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    pane->setReadOnly(true);
    pane->setUndoRedoEnabled(false);
    pane->setLineWrapMode(QPlainTextEdit::NoWrap);
    pane->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    pane->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    pane->ensurePolished();
    const QFontMetrics fm(pane->font());
    const int margin = static_cast<int>(pane->document()->documentMargin());
    const int extra = 2 * pane->frameWidth() + 2 * margin;
    pane->setFixedSize(fm.horizontalAdvance(QString(kTextRowWidth, u'0')) + extra + 4,
                       kTextRowCount * fm.lineSpacing() + extra + 2);
    return pane;
}

}  // namespace

frmInAscii::frmInAscii(Tavo& tavo, Shell& shell)
    : QWidget(nullptr, Qt::Window),
      m_shell(shell),
      SerialPort(tavo.dispatch(), tavo.store()),
      m_dmRefresh([this] {
          const QString shown = toQString(m_dmText);
          if (rtbDM->toPlainText() != shown) rtbDM->setPlainText(shown);
      }) {
    setObjectName(QStringLiteral("frmInAscii"));
    setWindowTitle(QString::fromLatin1(kAsciiTitle));
    buildControls();
    // The logic sets the captions as it starts, so the controls come first.
    m_input = std::make_unique<AsciiInput>(tavo, SerialPort, *this);
    m_dmText = m_input->rows.rowsAsText();
    m_dmRefresh.flush();
    bindControls();
    setFixedSize(sizeHint());
}

frmInAscii::~frmInAscii() = default;

void frmInAscii::buildControls() {
    fraSerial = new QGroupBox(QStringLiteral("Data Hardware:"), this);
    fraSerial->setObjectName(QStringLiteral("fraSerial"));
    cmdPortSetup = makeButton(fraSerial, "cmdPortSetup", "");
    cmdPortSetup->setMinimumWidth(
        cmdPortSetup->fontMetrics().horizontalAdvance(QStringLiteral("8:115200,e,8,1.5")) + 24);
    cmdPortOpen = makeButton(fraSerial, "cmdPortOpen", kCaptionOpen);
    tbDial = new QLineEdit(QString::fromLatin1(kDefaultDialText), fraSerial);
    tbDial->setObjectName(QStringLiteral("tbDial"));
    tbDial->setPlaceholderText(QStringLiteral("number"));
    cmdPortDial = makeButton(fraSerial, "cmdPortDial", "Dial");
    cmdPortHangup = makeButton(fraSerial, "cmdPortHangup", "Hang Up");
    // Shown until the port first opens: the window starts with it closed.
    lblOpenPortDummy = new QLabel(QString::fromLatin1(kAsciiReminder), fraSerial);
    lblOpenPortDummy->setObjectName(QStringLiteral("lblOpenPortDummy"));
    lblOpenPortDummy->setStyleSheet(QStringLiteral("color: red"));

    auto* port = new QGridLayout(fraSerial);
    port->addWidget(cmdPortSetup, 0, 0);
    port->addWidget(cmdPortOpen, 0, 1);
    port->addWidget(lblOpenPortDummy, 0, 2, 1, 2);
    port->addWidget(tbDial, 1, 0);
    port->addWidget(cmdPortDial, 1, 1);
    port->addWidget(cmdPortHangup, 1, 2);
    lblNotice = makeNoticeLabel(fraSerial);
    port->addWidget(lblNotice, 2, 0, 1, 4);
    port->setColumnStretch(3, 1);

    rtbDM = makePane(this);
    tbWrapWidth = new QLineEdit(this);
    tbWrapWidth->setObjectName(QStringLiteral("tbWrapWidth"));
    tbWrapWidth->setFixedWidth(
        tbWrapWidth->fontMetrics().horizontalAdvance(QStringLiteral("000000")) + 12);

    auto* width = new QHBoxLayout;
    width->addWidget(new QLabel(QStringLiteral("Wrap Width:"), this));
    width->addWidget(tbWrapWidth);
    width->addStretch();

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(fraSerial);
    layout->addWidget(new QLabel(QStringLiteral("Displayed Memory:"), this));
    layout->addWidget(rtbDM);
    layout->addLayout(width);
}

void frmInAscii::bindControls() {
    AsciiInput* in = m_input.get();
    connect(cmdPortSetup, &QPushButton::clicked, this, [in] { in->cmdPortSetup_Click(); });
    connect(cmdPortOpen, &QPushButton::clicked, this, [in] { in->cmdPortOpen_Click(); });
    connect(cmdPortDial, &QPushButton::clicked, this,
            [this, in] { in->cmdPortDial_Click(fromQString(tbDial->text())); });
    connect(cmdPortHangup, &QPushButton::clicked, this, [in] { in->cmdPortHangup_Click(); });
    connect(tbWrapWidth, &QLineEdit::textChanged, this,
            [in](const QString& text) { in->tbWrapWidth_Change(fromQString(text)); });
    // F1 anywhere in the window, before any control sees the key.
    new QShortcut(QKeySequence(Qt::Key_F1), this, [this] { m_shell.showHelp(); });
}

void frmInAscii::messageBox(const std::string& text, const std::string& detail) {
    showMessageBox(this, text, detail);
}

void frmInAscii::alert(const std::string& text, const std::string& detail) {
    showAlertBox(this, text, detail);
}

void frmInAscii::setOpenCaption(const std::string& caption) {
    cmdPortOpen->setText(toQString(caption));
}

void frmInAscii::setSetupCaption(const std::string& text, const std::string& refusal) {
    cmdPortSetup->setText(toQString(text));
    cmdPortSetup->setToolTip(toQString(refusal));
}

void frmInAscii::showReminder(bool visible) {
    lblOpenPortDummy->setVisible(visible);
}

void frmInAscii::setNotice(const std::string& text) {
    lblNotice->setText(toQString(text));
}

std::optional<PortSetup> frmInAscii::askPortSetup(const PortSetup& current) {
    return zelvan::askPortSetup(current, m_input->link().store(), this);
}

void frmInAscii::placeWindow() {
    placeUnderMainWindow(this);
}

// Modeless, kept above the main window by the window manager.
void frmInAscii::showWindow() {
    if (QWidget* main = mainWindow()) {
        winId();
        main->winId();
        windowHandle()->setTransientParent(main->windowHandle());
    }
    show();
}

void frmInAscii::hideWindow() {
    hide();
}

void frmInAscii::setDMText(const std::string& text) {
    m_dmText = text;
    m_dmRefresh.request();
}

void frmInAscii::setWrapWidthText(const std::string& text) {
    tbWrapWidth->setText(toQString(text));
}

// The operator can't close it; only hideForm takes it away.
void frmInAscii::closeEvent(QCloseEvent* e) {
    e->ignore();
}

}  // namespace zelvan
