#include "textinput/frmintds.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWindow>

#include "core/windowplace.h"
#include "platform/qtext.h"

namespace zelvan {

namespace {

struct KeyCode {
    int qtKey;
    int code;
};

// The keys the window acts on, with the code it knows each by.
constexpr KeyCode kKeyCodes[] = {
    {Qt::Key_PageUp, kKeyPageUp},
    {Qt::Key_PageDown, kKeyPageDown},
    {Qt::Key_E, kKeyE},
    {Qt::Key_F1, kKeyF1},
};

int keyCodeOf(int qtKey) {
    for (const KeyCode& k : kKeyCodes)
        if (k.qtKey == qtKey) return k.code;
    return 0;
}

// Caption panes show their lines whole: no wrap, scroll bars when needed.
QPlainTextEdit* makePane(const char* name) {
    auto* pane = new QPlainTextEdit;
    pane->setObjectName(QString::fromLatin1(name));
    pane->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    pane->setReadOnly(true);
    pane->setUndoRedoEnabled(false);
    pane->setLineWrapMode(QPlainTextEdit::NoWrap);
    const QFontMetrics fm(pane->font());
    pane->setFixedSize(fm.horizontalAdvance(QString(36, u'0')) + 24, 6 * fm.lineSpacing() + 24);
    return pane;
}

QLineEdit* makeBox(const char* name) {
    auto* box = new QLineEdit;
    box->setObjectName(QString::fromLatin1(name));
    return box;
}

QPushButton* makeButton(const char* name, const char* caption) {
    auto* button = new QPushButton(QString::fromLatin1(caption));
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoDefault(false);
    return button;
}

// Lines end in CR LF in the logic and in LF in a pane.
QString paneText(std::string text) {
    for (std::size_t at; (at = text.find("\r\n")) != std::string::npos;) text.erase(at, 1);
    return toQString(text);
}

std::optional<QString> qtFileDialog(QWidget* parent, const QString& title, const QString& start,
                                    const QStringList& filters) {
    QFileDialog dialog(parent, title);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilters(filters);
    dialog.selectNameFilter(filters.value(0));
    if (!start.isEmpty()) dialog.selectFile(start);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return dialog.selectedFiles().constFirst();
}

QWidget* mainWindow() {
    for (QWidget* top : QApplication::topLevelWidgets())
        if (top->objectName() == QLatin1String("frmTavo")) return top;
    return nullptr;
}

}  // namespace

frmInTDS::frmInTDS(Tavo& tavo, Shell& shell)
    : QMainWindow(nullptr, Qt::Window), m_shell(shell), m_input(tavo, *this) {
    setObjectName(QStringLiteral("frmInTDS"));
    setWindowTitle(QString::fromLatin1(kTdsTitle));
    m_chooser = qtFileDialog;
    buildControls();
    buildMenus();
    qApp->installEventFilter(this);
    setFixedSize(sizeHint());
}

frmInTDS::~frmInTDS() = default;

QStringList frmInTDS::nameFilters(const std::string& filter) {
    const QStringList parts = QString::fromLatin1(filter.c_str()).split(u'|');
    QStringList filters;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        // "*.*" means every file on the system the format comes from; here a
        // name needn't have a dot.
        QString patterns = parts[i + 1];
        patterns.replace(u';', u' ').replace(QStringLiteral("*.*"), QStringLiteral("*"));
        filters << parts[i] + QStringLiteral(" (") + patterns + u')';
    }
    return filters;
}

void frmInTDS::buildControls() {
    tbTDSFile = makeBox("tbTDSFile");
    cmdSelectTDSFile = makeButton("cmdSelectTDSFile", "Browse");
    tbTCOffset = makeBox("tbTCOffset");
    rtbCaptionCurrent = makePane("rtbCaptionCurrent");
    rtbCaptionNext = makePane("rtbCaptionNext");
    bSend = makeButton("bSend", "S-->e-->n-->d-->");
    bRewind = makeButton("bRewind", "Rewind");
    bErase = makeButton("bErase", "Erase");

    auto* file = new QGridLayout;
    file->addWidget(new QLabel(QStringLiteral("Selected TDS or Text File:")), 0, 0);
    file->addWidget(tbTDSFile, 0, 1);
    file->addWidget(cmdSelectTDSFile, 0, 2);
    file->addWidget(new QLabel(QStringLiteral("Timecode Offset:")), 1, 0);
    file->addWidget(tbTCOffset, 1, 1);

    auto* panes = new QGridLayout;
    panes->addWidget(new QLabel(QStringLiteral("Displayed:")), 0, 0);
    panes->addWidget(rtbCaptionCurrent, 1, 0);
    panes->addWidget(new QLabel(QStringLiteral("On Deck:")), 0, 1);
    panes->addWidget(rtbCaptionNext, 1, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(bRewind);
    buttons->addWidget(bErase);
    buttons->addStretch();
    buttons->addWidget(bSend);

    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    layout->addLayout(file);
    layout->addLayout(panes);
    layout->addLayout(buildPlaybackControls());
    layout->addLayout(buttons);
    setCentralWidget(central);

    connect(cmdSelectTDSFile, &QPushButton::clicked, this, [this] { m_input.openFile(); });
    connect(bSend, &QPushButton::clicked, this, [this] { m_input.send(); });
    connect(bErase, &QPushButton::clicked, this, [this] { m_input.erase(); });
}

// Play is enabled once a file with timings is open. Both boxes take effect
// as they are typed; text that is no time or number leaves them as they were.
QLayout* frmInTDS::buildPlaybackControls() {
    cmdPlay = makeButton("cmdPlay", "Play");
    cmdPlay->setEnabled(false);
    lblClock = new QLabel(toQString(clockText(0)));
    lblClock->setObjectName(QStringLiteral("lblClock"));
    lblClock->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    tbStartAt = makeBox("tbStartAt");
    tbStartAt->setPlaceholderText(QStringLiteral("00:00:00"));
    tbOffset = makeBox("tbOffset");
    tbOffset->setPlaceholderText(QStringLiteral("0.0"));
    tbOffset->setToolTip(
        QStringLiteral("Seconds added to every cue time, to 0.1 s; negative for earlier"));
    const int boxWidth = QFontMetrics(tbStartAt->font()).horizontalAdvance(QString(12, u'0'));
    tbStartAt->setFixedWidth(boxWidth);
    tbOffset->setFixedWidth(boxWidth);

    auto* row = new QHBoxLayout;
    row->addWidget(cmdPlay);
    row->addWidget(lblClock);
    row->addStretch();
    row->addWidget(new QLabel(QStringLiteral("Start at:")));
    row->addWidget(tbStartAt);
    row->addWidget(new QLabel(QStringLiteral("Offset:")));
    row->addWidget(tbOffset);

    connect(tbStartAt, &QLineEdit::textChanged, this,
            [this](const QString& text) { m_input.startAtChanged(fromQString(text)); });
    connect(tbOffset, &QLineEdit::textChanged, this,
            [this](const QString& text) { m_input.offsetChanged(fromQString(text)); });
    return row;
}

// The caption entries go through the key handler with their key's code; the
// key names stand in the captions, not as shortcuts, since the window's key
// handler already acts on them.
void frmInTDS::buildMenus() {
    QMenu* file = menuBar()->addMenu(QStringLiteral("File"));
    mnuFileOpen = file->addAction(QStringLiteral("Open"), this, [this] { m_input.openFile(); });
    QMenu* caption = menuBar()->addMenu(QStringLiteral("Caption"));
    mnuSend = caption->addAction(QStringLiteral("Send         PageDown"), this,
                                 [this] { m_input.keyDown(kKeyPageDown); });
    mnuCaptionRewind = caption->addAction(QStringLiteral("Rewind     PageUp"), this,
                                          [this] { m_input.keyDown(kKeyPageUp); });
    mnuErase = caption->addAction(QStringLiteral("Erase        E"), this,
                                  [this] { m_input.keyDown(kKeyE); });
    connect(bRewind, &QPushButton::clicked, mnuCaptionRewind, &QAction::trigger);
    // F5 is a real shortcut: the key handler doesn't know it.
    mnuPlayPause =
        caption->addAction(QStringLiteral("Play/Pause"), this, [this] { m_input.playPause(); });
    mnuPlayPause->setShortcut(QKeySequence(Qt::Key_F5));
    mnuPlayPause->setEnabled(false);
    connect(cmdPlay, &QPushButton::clicked, mnuPlayPause, &QAction::trigger);
}

// A key goes first to the focused control, then up through its parents; the
// window acts once, where the key first lands, and never takes it away.
bool frmInTDS::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) return false;
    auto* widget = static_cast<QWidget*>(watched);
    if (widget->window() != this) return false;
    QWidget* focus = QApplication::focusWidget();
    QWidget* firstStop = focus && focus->window() == this ? focus : this;
    if (widget != firstStop) return false;
    if (const int code = keyCodeOf(static_cast<QKeyEvent*>(event)->key())) m_input.keyDown(code);
    return false;
}

void frmInTDS::placeWindow() {
    placeUnderMainWindow(this);
}

// Modeless, kept above the main window by the window manager.
void frmInTDS::showWindow() {
    if (QWidget* main = mainWindow()) {
        winId();
        main->winId();
        windowHandle()->setTransientParent(main->windowHandle());
    }
    show();
}

void frmInTDS::hideWindow() {
    hide();
}

// Paths are the file system's own bytes, not text of the code page. The
// dialog starts in the folder of the file last chosen, at the name the
// operator sees in tbTDSFile.
std::optional<std::string> frmInTDS::chooseFile(const std::string& title, const std::string& start,
                                                const std::string& filter) {
    QString startPath = QFile::decodeName(start.c_str());
    if (!startPath.isEmpty()) startPath = QFileInfo(startPath).dir().filePath(tbTDSFile->text());
    const std::optional<QString> path =
        m_chooser(this, QString::fromLatin1(title.c_str()), startPath, nameFilters(filter));
    if (!path) return std::nullopt;
    return QFile::encodeName(*path).toStdString();
}

void frmInTDS::setFileName(const std::string& name) {
    tbTDSFile->setText(QFile::decodeName(name.c_str()));
}

void frmInTDS::setOffsetText(const std::string& text) {
    tbTCOffset->setText(toQString(text));
}

void frmInTDS::setDisplayedText(const std::string& text) {
    rtbCaptionCurrent->setPlainText(paneText(text));
}

void frmInTDS::setOnDeckText(const std::string& text) {
    rtbCaptionNext->setPlainText(paneText(text));
}

void frmInTDS::showPlayState(bool enabled, bool playing) {
    cmdPlay->setEnabled(enabled);
    mnuPlayPause->setEnabled(enabled);
    cmdPlay->setText(playing ? QStringLiteral("Pause") : QStringLiteral("Play"));
}

void frmInTDS::setClockText(const std::string& text) {
    lblClock->setText(toQString(text));
}

void frmInTDS::setPlaybackBoxes(const std::string& startAt, const std::string& offset) {
    tbStartAt->setText(toQString(startAt));
    tbOffset->setText(toQString(offset));
}

void frmInTDS::focusSend() {
    bSend->setFocus();
}

void frmInTDS::showHelp() {
    m_shell.showHelp();
}

}  // namespace zelvan
