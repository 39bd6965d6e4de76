#include "display/frmoutdw.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QCloseEvent>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QStatusBar>
#include <QTextDocument>
#include <QVBoxLayout>
#include <QWindow>
#include <algorithm>
#include <vector>

#include "core/tavo.h"
#include "platform/qtext.h"
#include "platform/qtmessagebox.h"
#include "support/frmserialconfig.h"

namespace zelvan {

namespace {

constexpr const char* kDefaultPending = "12345678901234567890123456789012";

// The box shows one line break for CR LF, a lone CR or a lone LF alike, and
// one character for each other byte. Box position i stands for the bytes
// from at[i] on; `at` has one more entry, for the end.
struct BoxText {
    QString text;
    std::vector<std::size_t> at;
};

BoxText boxTextOf(const std::string& bytes) {
    BoxText box;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        box.at.push_back(i);
        const char b = bytes[i];
        if (b == '\r' || b == '\n') {
            box.text += QChar(QChar::ParagraphSeparator);
            if (b == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') ++i;
        } else {
            box.text += toQString(bytes.substr(i, 1));
        }
    }
    box.at.push_back(bytes.size());
    return box;
}

// An edit changes only the bytes the operator changed. The box's text is laid
// beside what it showed, matched from the end back to the caret, where an edit
// ends, and from the start; only the span between goes back into bytes, a
// line break typed in as CR LF. So a byte 0xA0, which the box shows as a
// blank, or a lone CR or LF elsewhere keeps its byte.
std::string editedBytes(const std::string& bytes, QString shown, qsizetype caret) {
    const BoxText before = boxTextOf(bytes);
    shown.replace(QChar::LineSeparator, QChar::ParagraphSeparator);
    const qsizetype common = std::min(before.text.size(), shown.size());
    qsizetype tail = 0;
    while (tail < common && tail < shown.size() - caret &&
           before.text[before.text.size() - 1 - tail] == shown[shown.size() - 1 - tail])
        ++tail;
    qsizetype head = 0;
    while (head < common - tail && before.text[head] == shown[head]) ++head;
    std::string out = bytes.substr(0, before.at[static_cast<std::size_t>(head)]);
    for (QChar c : shown.mid(head, shown.size() - tail - head))
        out += c == QChar::ParagraphSeparator ? std::string("\r\n") : fromQString(QString(c));
    return out + bytes.substr(before.at[static_cast<std::size_t>(before.text.size() - tail)]);
}

// The window system's colour value: red in the low byte, then green, then blue.
QColor colourOf(int value) {
    return QColor(value & 0xFF, (value >> 8) & 0xFF, (value >> 16) & 0xFF);
}

// Judged by the glyphs: some platforms report no pitch for a font they found.
bool isFixedPitch(const QFont& font) {
    const QFontMetrics metrics(font);
    return metrics.horizontalAdvance(QLatin1Char('i')) ==
           metrics.horizontalAdvance(QLatin1Char('M'));
}

// The system's fixed font where the platform names one, else whatever fixed
// family the font configuration offers.
QFont fixedPitchFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (isFixedPitch(font)) return font;
    font.setFamily(QStringLiteral("monospace"));
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
    return font;
}

QWidget* mainWindow() {
    for (QWidget* top : QApplication::topLevelWidgets())
        if (top->objectName() == QLatin1String("frmTavo")) return top;
    return nullptr;
}

}  // namespace

frmOutDW::frmOutDW(Tavo& tavo, Shell& shell)
    : QMainWindow(nullptr, Qt::Window),
      m_tavo(tavo),
      m_shell(shell),
      SerialPortOut(tavo.dispatch(), tavo.store()),
      m_console(tavo, SerialPortOut, *this, *this) {
    setObjectName(QStringLiteral("frmOutDW"));
    setWindowTitle(QStringLiteral("Halvane Display"));
    buildControls();
    new QShortcut(QKeySequence(Qt::Key_F1), this, [this] { m_shell.showHelp(); });
    m_console.formLoad();
    setFixedSize(sizeHint());
}

frmOutDW::~frmOutDW() = default;

// --- building the window ---

void frmOutDW::buildControls() {
    auto* central = new QWidget(this);
    setCentralWidget(central);
    auto* layout = new QVBoxLayout(central);
    layout->addWidget(buildPortFrame());
    auto* middle = new QHBoxLayout;
    middle->addWidget(buildBoardFrame());
    middle->addWidget(buildCommandButtons());
    middle->addWidget(buildModeBoxes());
    layout->addLayout(middle);
    layout->addWidget(buildPendingBox());

    m_statusPanel = new QLabel(this);
    m_statusPanel->setObjectName(QStringLiteral("sbStatusPanel1"));
    statusBar()->setObjectName(QStringLiteral("sbStatus"));
    statusBar()->addWidget(m_statusPanel, 1);
    statusBar()->setSizeGripEnabled(false);
}

QPushButton* frmOutDW::button(const char* name, const char* caption,
                              const std::function<void()>& action) {
    auto* b = new QPushButton(toQString(caption));
    b->setObjectName(QString::fromLatin1(name));
    connect(b, &QPushButton::clicked, this, action);
    return b;
}

QWidget* frmOutDW::buildPortFrame() {
    Frame1 = new QGroupBox(QStringLiteral("Serial Port"));
    auto* grid = new QGridLayout(Frame1);
    Label2 = new QLabel(QStringLiteral("          Setup               Open/Close"));
    grid->addWidget(Label2, 0, 0, 1, 2);
    cmdPortOutSetup = button("cmdPortOutSetup", "", [this] { m_console.cmdPortOutSetup_Click(); });
    cmdPortOutSetup->setMinimumWidth(110);
    cmdPortOutOpen =
        button("cmdPortOutOpen", kCaptionOpen, [this] { m_console.cmdPortOutOpen_Click(); });
    tbOutDial = new QLineEdit(toQString(kDefaultDialText));
    tbOutDial->setObjectName(QStringLiteral("tbOutDial"));
    cmdPortOutDial = button("cmdPortOutDial", "Dial", [this] {
        m_console.cmdPortOutDial_Click(fromQString(tbOutDial->text()));
    });
    cmdPortOutHangup =
        button("cmdPortOutHangup", "Hang Up", [this] { m_console.cmdPortOutHangup_Click(); });
    int column = 0;
    for (QWidget* w :
         {static_cast<QWidget*>(cmdPortOutSetup), static_cast<QWidget*>(cmdPortOutOpen),
          static_cast<QWidget*>(tbOutDial), static_cast<QWidget*>(cmdPortOutDial),
          static_cast<QWidget*>(cmdPortOutHangup)})
        grid->addWidget(w, 1, column++);
    return Frame1;
}

QWidget* frmOutDW::buildBoardFrame() {
    auto* column = new QWidget;
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    Frame2 = new QGroupBox(QStringLiteral("Board Location"));
    auto* board = new QVBoxLayout(Frame2);
    LineOutput& e = m_console.engine();
    board->addWidget(button("cmdBoardFront", "Front", [&e] { e.sendBoardFront(); }));
    board->addWidget(button("cmdBoardRear", "Rear", [&e] { e.sendBoardRear(); }));
    board->addWidget(button("cmdBoardReset", "Reset", [&e] { e.sendBoardReset(); }));
    layout->addWidget(Frame2);
    chkRevOnCD = new QCheckBox(QStringLiteral("RevOnCD"));
    bindBox(chkRevOnCD, "chkRevOnCD", ConsoleBox::RevOnCD);
    layout->addWidget(chkRevOnCD);
    layout->addStretch();
    return column;
}

QWidget* frmOutDW::buildCommandButtons() {
    auto* panel = new QWidget;
    auto* grid = new QGridLayout(panel);
    grid->setContentsMargins(0, 0, 0, 0);
    LineOutput& e = m_console.engine();
    // Clear Display and Erase both clear the rows in use.
    grid->addWidget(button("cmdClearDisplay", "Clear Display", [&e] { e.DWErase(); }), 0, 0, 1, 2);
    grid->addWidget(button("cmdErase", "Erase", [&e] { e.DWErase(); }), 1, 0);
    grid->addWidget(button("cmdReset", "Reset", [&e] { e.sendReset(); }), 1, 1);
    grid->addWidget(button("cmdRollup", "Rollup", [&e] { e.sendRollup(); }), 2, 0);
    grid->addWidget(button("cmdDim", "Dim", [&e] { e.sendDim(); }), 2, 1);
    grid->addWidget(button("cmdBright", "Bright", [&e] { e.sendBright(); }), 3, 0);
    grid->addWidget(button("cmdSendTest", "Startup Message", [&e] { e.showStartupBarker(true); }),
                    4, 0, 1, 2);
    grid->setRowStretch(5, 1);
    return panel;
}

void frmOutDW::bindBox(QCheckBox* box, const char* name, ConsoleBox which) {
    box->setObjectName(QString::fromLatin1(name));
    m_boxes[static_cast<std::size_t>(which)] = box;
    // A tick by mouse, key or a screen reader's toggle; the console's own
    // changes come back through showBox, which holds the signal.
    connect(box, &QCheckBox::toggled, this,
            [this, which](bool checked) { m_console.setBox(which, checked); });
}

QWidget* frmOutDW::buildModeBoxes() {
    auto* panel = new QWidget;
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    struct BoxEntry {
        QCheckBox** box;
        const char* name;
        const char* caption;
        ConsoleBox which;
    };
    for (const BoxEntry& s :
         {BoxEntry{&chkFilter, "chkFilter", kCaptionStartFilter, ConsoleBox::Filter},
          BoxEntry{&chkInput, "chkInput", "Listen", ConsoleBox::Input},
          BoxEntry{&chkReverse, "chkReverse", "Reverse Text", ConsoleBox::Reverse},
          BoxEntry{&chkRollup, "chkRollup", "Buffer Rollup", ConsoleBox::Rollup},
          BoxEntry{&chkSunrise, "chkSunrise", "Sunrise", ConsoleBox::Sunrise}}) {
        *s.box = new QCheckBox(QString::fromLatin1(s.caption));
        bindBox(*s.box, s.name, s.which);
        layout->addWidget(*s.box);
    }

    auto* lines = new QHBoxLayout;
    Label1 = new QLabel(QStringLiteral("Lines:"));
    tbScrollLines = new QLineEdit;
    tbScrollLines->setObjectName(QStringLiteral("tbScrollLines"));
    tbScrollLines->setFixedWidth(36);
    connect(tbScrollLines, &QLineEdit::textChanged, this,
            [this](const QString& text) { m_console.setLinesText(fromQString(text)); });
    VScrollLines = new QScrollBar(Qt::Vertical);
    VScrollLines->setObjectName(QStringLiteral("VScrollLines"));
    VScrollLines->setRange(kScrollLinesMin, kScrollLinesMax);
    VScrollLines->setValue(m_console.scrollLines());
    VScrollLines->setFixedHeight(44);
    connect(VScrollLines, &QScrollBar::valueChanged, this,
            [this](int value) { m_console.setScrollLines(value); });
    lines->addWidget(Label1);
    lines->addWidget(tbScrollLines);
    lines->addWidget(VScrollLines);
    lines->addStretch();
    layout->addLayout(lines);
    layout->addStretch();
    return panel;
}

QWidget* frmOutDW::buildPendingBox() {
    auto* panel = new QWidget;
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    tbPending = new QPlainTextEdit(QString::fromLatin1(kDefaultPending));
    tbPending->setObjectName(QStringLiteral("tbPending"));
    tbPending->setFont(fixedPitchFont());
    tbPending->setLineWrapMode(QPlainTextEdit::NoWrap);
    const QFontMetrics metrics(tbPending->font());
    tbPending->setMinimumWidth(metrics.horizontalAdvance(QLatin1Char('0')) * 36);
    tbPending->setFixedHeight(metrics.lineSpacing() * 4 + 12);
    m_boxBytes = kDefaultPending;
    m_console.setPendingText(m_boxBytes);
    connect(tbPending, &QPlainTextEdit::textChanged, this, [this] { pendingEdited(); });
    layout->addWidget(tbPending);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(button("cmdSendIt", "Send", [this] { m_console.cmdSendIt_Click(); }));
    buttons->addWidget(button("cmdSendAt", "Send@", [this] { m_console.cmdSendAt_Click(); }));
    buttons->addWidget(button("cmdFromReadable", "From Read",
                              [this] { m_console.cmdFromReadable_Click(clipboardText()); }));
    buttons->addWidget(button("cmdToReadable", "To Read",
                              [this] { m_console.cmdToReadable_Click(clipboardText()); }));
    buttons->addWidget(button("cmdLuckyCharm", "\xFB", [this] { luckyCharm(); }));
    layout->addLayout(buttons);
    return panel;
}

// --- actions that need the widgets ---

void frmOutDW::pendingEdited() {
    m_boxBytes = editedBytes(m_boxBytes, tbPending->document()->toRawText(),
                             tbPending->textCursor().position());
    m_console.setPendingText(m_boxBytes);
}

// Positions in the box count a line break as one character, in the pending
// text as one or two.
void frmOutDW::luckyCharm() {
    m_pendingRefresh.flush();
    const QTextCursor cursor = tbPending->textCursor();
    const BoxText box = boxTextOf(m_boxBytes);
    const std::size_t start = box.at[static_cast<std::size_t>(cursor.selectionStart())];
    const std::size_t end = box.at[static_cast<std::size_t>(cursor.selectionEnd())];
    const std::size_t caret = m_console.cmdLuckyCharm_Click(start, end - start);
    m_pendingRefresh.flush();
    QTextCursor moved = tbPending->textCursor();
    moved.setPosition(static_cast<int>(boxTextOf(m_boxBytes.substr(0, caret)).text.size()));
    tbPending->setTextCursor(moved);
    tbPending->setFocus();
}

std::string frmOutDW::clipboardText() const {
    return fromQString(QApplication::clipboard()->text());
}

// --- what the console shows ---

void frmOutDW::showBox(ConsoleBox box, bool ticked) {
    QCheckBox* b = m_boxes[static_cast<std::size_t>(box)];
    if (!b) return;  // while the window is still being built
    const QSignalBlocker hold(b);
    b->setChecked(ticked);
}

void frmOutDW::showFilterCaption(const std::string& caption, int colour) {
    chkFilter->setText(toQString(caption));
    QPalette palette = chkFilter->palette();
    palette.setColor(QPalette::WindowText, colourOf(colour));
    chkFilter->setPalette(palette);
}

void frmOutDW::showScrollLines(int value) {
    const QSignalBlocker hold(VScrollLines);
    VScrollLines->setValue(value);
}

void frmOutDW::showLinesText(const std::string& text) {
    const QSignalBlocker hold(tbScrollLines);
    tbScrollLines->setText(toQString(text));
}

void frmOutDW::showPending(const std::string&) {
    m_pendingRefresh.request();
}

// The box takes the engine's text as it is when the refresh runs, not as it
// was when asked: an edit by the operator in between is already the engine's
// text, so it stays.
void frmOutDW::showPendingNow() {
    if (m_boxBytes == m_console.pendingText()) return;
    m_boxBytes = m_console.pendingText();
    const QSignalBlocker hold(tbPending);
    tbPending->setPlainText(boxTextOf(m_boxBytes).text);
}

void frmOutDW::placeWindow() {
    if (QWidget* main = mainWindow())
        move(main->frameGeometry().left() + main->frameGeometry().width(), 0);
}

// Owned by the main window: it stays above it, without the main window
// taking it down, since the main console holds this window.
void frmOutDW::showWindow() {
    show();
    QWidget* main = mainWindow();
    if (main && main->windowHandle() && windowHandle())
        windowHandle()->setTransientParent(main->windowHandle());
}

void frmOutDW::hideWindow() {
    hide();
}

// --- what the serial link shows ---

void frmOutDW::messageBox(const std::string& text, const std::string& detail) {
    showMessageBox(this, text, detail);
}

void frmOutDW::alert(const std::string& text, const std::string& detail) {
    showAlertBox(this, text, detail);
}

void frmOutDW::setOpenCaption(const std::string& caption) {
    cmdPortOutOpen->setText(toQString(caption));
}

void frmOutDW::setSetupCaption(const std::string& text, const std::string& refusal) {
    cmdPortOutSetup->setText(toQString(text));
    cmdPortOutSetup->setToolTip(toQString(refusal));
}

void frmOutDW::setNotice(const std::string& text) {
    m_statusPanel->setText(toQString(text));
}

std::optional<PortSetup> frmOutDW::askPortSetup(const PortSetup& current) {
    return zelvan::askPortSetup(current, m_tavo.store(), this);
}

QString frmOutDW::noticeText() const {
    return m_statusPanel->text();
}

// The operator can't close the sign's window; it goes with hideForm.
void frmOutDW::closeEvent(QCloseEvent* e) {
    e->ignore();
}

}  // namespace zelvan
