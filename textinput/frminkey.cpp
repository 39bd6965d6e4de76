#include "textinput/frminkey.h"

#include <QApplication>
#include <QFontDatabase>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QWindow>

#include "core/windowplace.h"
#include "platform/codepage.h"
#include "platform/qtext.h"

namespace zelvan {

namespace {

constexpr const char* kRuler = "12345678901234567890123456789012";

QWidget* mainWindow() {
    for (QWidget* top : QApplication::topLevelWidgets())
        if (top->objectName() == QLatin1String("frmTavo")) return top;
    return nullptr;
}

// The key's character as a code of the code page: Enter and Return are 13,
// a key with no text (arrows, function keys) has none.
std::optional<std::int16_t> keyAscii(const QKeyEvent& key) {
    if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) return 13;
    const QString text = key.text();
    if (text.isEmpty()) return std::nullopt;
    const auto byte = codepage::fromUnicode(text.at(0).unicode());
    return byte ? std::int16_t{*byte} : kNoCharacter;
}

}  // namespace

frmInKey::frmInKey(Tavo& tavo, Shell& shell) : QWidget(nullptr, Qt::Window), m_shell(shell) {
    setObjectName(QStringLiteral("frmInKey"));
    setWindowTitle(QString::fromLatin1(kKeyTitle));
    buildControls();
    m_input = std::make_unique<KeyInput>(tavo, *this);
    bindControls();
    setFixedSize(sizeHint());
}

frmInKey::~frmInKey() = default;

// The ruler and the input line share the fixed-pitch font, so each digit
// stands over the column it numbers.
void frmInKey::buildControls() {
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    Label1 = new QLabel(QString::fromLatin1(kRuler), this);
    Label1->setObjectName(QStringLiteral("Label1"));
    Label1->setFont(fixed);
    Label1->setEnabled(false);
    // The input line keeps a small margin before its first character.
    Label1->setContentsMargins(2, 0, 0, 0);
    tbInput = new QLineEdit(this);
    tbInput->setObjectName(QStringLiteral("tbInput"));
    tbInput->setFont(fixed);
    tbInput->setFrame(false);
    tbInput->setTextMargins(0, 0, 0, 0);
    const QFontMetrics fm(fixed);
    // Room for the 32 columns and the caret behind them; a longer line scrolls.
    tbInput->setMinimumWidth(fm.horizontalAdvance(QString(40, u'0')));
    Label2 = new QLabel(QStringLiteral("Wrap Width:"), this);
    Label2->setObjectName(QStringLiteral("Label2"));
    tbWrapWidth = new QLineEdit(this);
    tbWrapWidth->setObjectName(QStringLiteral("tbWrapWidth"));
    tbWrapWidth->setFixedWidth(fm.horizontalAdvance(QStringLiteral("000000")) + 12);
    cmdSend = new QPushButton(QStringLiteral("Send It"), this);
    cmdSend->setObjectName(QStringLiteral("cmdSend"));
    cmdSend->setAutoDefault(false);
    cmdSend->setFocusPolicy(Qt::NoFocus);
    lblNotify = new QLabel(this);
    lblNotify->setObjectName(QStringLiteral("lblNotify"));
    lblNotify->setStyleSheet(QStringLiteral("color: red; font-weight: bold"));
    // The window keeps its size whether or not a notice stands.
    QSizePolicy keep = lblNotify->sizePolicy();
    keep.setRetainSizeWhenHidden(true);
    lblNotify->setSizePolicy(keep);
    lblNotify->setMinimumWidth(
        lblNotify->fontMetrics().horizontalAdvance(QString::fromLatin1(kBetterTypeFast)) + 24);
    lblNotify->hide();

    auto* grid = new QGridLayout(this);
    grid->addWidget(Label1, 0, 0, 1, 5);
    grid->addWidget(tbInput, 1, 0, 1, 5);
    grid->addWidget(Label2, 2, 0);
    grid->addWidget(tbWrapWidth, 2, 1);
    grid->addWidget(lblNotify, 2, 2);
    grid->addWidget(cmdSend, 2, 4);
    grid->setColumnStretch(3, 1);
    grid->setVerticalSpacing(2);
}

void frmInKey::bindControls() {
    KeyInput* in = m_input.get();
    tbInput->installEventFilter(this);
    connect(tbWrapWidth, &QLineEdit::textChanged, this,
            [in](const QString& text) { in->tbWrapWidth_Change(fromQString(text)); });
    connect(cmdSend, &QPushButton::clicked, this, [this, in] {
        in->cmdSend_Click();
        tbInput->setFocus();
    });
    // F1 anywhere in the window, before any control sees the key.
    new QShortcut(QKeySequence(Qt::Key_F1), this, [this] { m_shell.showHelp(); });
}

// Every key of the input line passes the filter's key handler first.
bool frmInKey::eventFilter(QObject* watched, QEvent* event) {
    if (watched != tbInput || event->type() != QEvent::KeyPress) return false;
    const auto code = keyAscii(static_cast<const QKeyEvent&>(*event));
    return code && m_input->tbInput_KeyPress(*code);
}

// Each time the window becomes active, typing goes to the input line.
void frmInKey::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) tbInput->setFocus();
    QWidget::changeEvent(event);
}

void frmInKey::placeWindow() {
    placeUnderMainWindow(this);
}

// Modeless, kept above the main window by the window manager.
void frmInKey::showWindow() {
    if (QWidget* main = mainWindow()) {
        winId();
        main->winId();
        windowHandle()->setTransientParent(main->windowHandle());
    }
    show();
    activateWindow();
    tbInput->setFocus();
}

void frmInKey::hideWindow() {
    hide();
}

std::string frmInKey::inputText() const {
    return fromQString(tbInput->text());
}

void frmInKey::setInputText(const std::string& text) {
    tbInput->setText(toQString(text));
    tbInput->end(false);
}

void frmInKey::setWrapWidthText(const std::string& text) {
    tbWrapWidth->setText(toQString(text));
}

void frmInKey::showNotify(bool visible, const std::string& text) {
    lblNotify->setText(toQString(text));
    lblNotify->setVisible(visible);
}

}  // namespace zelvan
