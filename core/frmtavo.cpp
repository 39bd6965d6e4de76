#include "core/frmtavo.h"

#include <QAction>
#include <QCheckBox>
#include <QCloseEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QStatusBar>
#include <algorithm>

#include "platform/qtext.h"
#include "support/frmansitable.h"
#include "support/frmtavoprefs.h"

namespace zelvan {

namespace {

// Layout measures come in twips (1440 to the inch), 15 to a pixel at 96 dpi.
constexpr int px(int twips) {
    return twips / 15;
}

constexpr int kWidth = 480;
constexpr int kHeight = 520;

struct OptionButton {
    FilterKind kind;
    const char* name;
    const char* caption;
    int top;  // inside Frame1, in twips
    bool shown;
    bool enabled;
};

// The ASCII button sits below the frame's bottom edge, out of sight but
// enabled; the digital video, keyboard and file buttons are hidden. All stay
// reachable from the Input menu.
constexpr OptionButton kOptions[] = {
    {FilterKind::L21Serial, "obIFL21Serial", "Line-21 (Serial)", 240, true, true},
    {FilterKind::L21USB, "obIFL21USB", "Line-21 (Adrienne USB)", 480, true, true},
    {FilterKind::L21Video, "obIFL21Video", "Line-21 (Digital Video)", 720, false, true},
    {FilterKind::Ascii, "obIFAscii", "Ascii (Serial)", 1080, true, true},
    {FilterKind::Key, "obIFKey", "Ascii (Keyboard)", 1320, false, false},
    {FilterKind::TDS, "obIFTDS", "TDS File", 1560, false, false},
};

}  // namespace

frmTavo::frmTavo(Tavo& tavo, Shell& shell)
    : m_tavo(tavo), m_shell(shell), m_console(tavo, *this, shell) {
    setWindowTitle(QStringLiteral("Zelvan 21"));
    setObjectName(QStringLiteral("frmTavo"));
    buildControls();
    buildMenus();
    formLoad();
}

frmTavo::~frmTavo() {
    if (m_tavo.view == this) m_tavo.view = nullptr;
}

void frmTavo::buildControls() {
    auto* central = new QWidget(this);
    setCentralWidget(central);

    Frame1 = new QGroupBox(QStringLiteral("Input Filter:"), central);
    Frame1->setGeometry(8, 4, 220, px(855));
    for (const OptionButton& button : kOptions) {
        auto* rb = new QRadioButton(QString::fromLatin1(button.caption), Frame1);
        rb->setObjectName(QString::fromLatin1(button.name));
        rb->setGeometry(10, px(button.top), 200, 20);
        rb->setVisible(button.shown);
        rb->setEnabled(button.enabled);
        // Runs only when the button becomes set, not on a click on a set button.
        connect(rb, &QRadioButton::toggled, this, [this, kind = button.kind](bool on) {
            if (on) m_console.select(kind);
        });
        m_options[static_cast<std::size_t>(button.kind)] = rb;
    }

    Frame2 = new QGroupBox(QStringLiteral("Output Filters:"), central);
    Frame2->setGeometry(236, 4, 236, px(615));
    chkOutDW = new QCheckBox(QStringLiteral("Zelvan Display"), Frame2);
    chkOutDW->setObjectName(QStringLiteral("chkOutDW"));
    chkOutDW->setGeometry(10, 18, 200, 20);
    chkOutDW->setEnabled(false);
    connect(chkOutDW, &QCheckBox::toggled, this,
            [this](bool on) { m_console.chkOutDW_Click(on ? 1 : 0); });
    chkOutQT = new QCheckBox(QStringLiteral("Quicktime (QTtext)"), Frame2);
    chkOutRT = new QCheckBox(QStringLiteral("Real (RealText)"), Frame2);
    chkOutWT = new QCheckBox(QStringLiteral("WiMP (SAMI)"), Frame2);
    for (auto [box, flag] :
         {std::pair{chkOutQT, &bOutQT}, {chkOutRT, &bOutRT}, {chkOutWT, &bOutWT}}) {
        box->hide();
        connect(box, &QCheckBox::toggled, this, [flag](bool on) { *flag = on; });
    }

    Label1 = new QLabel(QStringLiteral("Raw Input:"), central);
    Label1->setGeometry(8, 70, 200, 18);
    m_read = std::make_unique<QtHistoryPane>(central);
    m_read->widget()->setObjectName(QStringLiteral("rtbReadHistory"));
    m_read->widget()->setGeometry(8, 88, kWidth - 16, 300);

    Label2 = new QLabel(QStringLiteral("Raw History:"), central);
    Label2->hide();
    m_raw = std::make_unique<QtHistoryPane>(central);
    m_raw->widget()->setObjectName(QStringLiteral("rtbRawHistory"));
    m_raw->widget()->hide();

    Label5 = new QLabel(QStringLiteral("Chars Rec'd:"), central);
    txtTotChars = new QLineEdit(central);
    txtTotChars->setObjectName(QStringLiteral("txtTotChars"));
    txtTotChars->setEnabled(false);

    lblControlCodes = new QLabel(QStringLiteral("Control Code Reference (click)"), central);
    lblControlCodes->setObjectName(QStringLiteral("lblControlCodes"));
    lblControlCodes->installEventFilter(this);
    lblControlCodes->hide();

    cmdExit = new QPushButton(QStringLiteral("E X I T"), central);
    cmdExit->setObjectName(QStringLiteral("cmdExit"));
    connect(cmdExit, &QPushButton::clicked, this, [this] { m_tavo.exitProgram(); });

    m_statusPanel = new QLabel(this);
    m_statusPanel->setObjectName(QStringLiteral("sbStatusPanel1"));
    statusBar()->setObjectName(QStringLiteral("sbStatus"));
    statusBar()->addWidget(m_statusPanel, 1);
    statusBar()->setSizeGripEnabled(false);
}

void frmTavo::buildMenus() {
    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    file->addAction(QStringLiteral("&Preferences"), this, [this] { mnuFilePrefs_Click(); });
    file->addAction(QStringLiteral("E&xit"), this, [this] { m_tavo.exitProgram(); });

    mnuInput = menuBar()->addMenu(QStringLiteral("&Input"));
    for (const OptionButton& button : kOptions)
        mnuInput->addAction(QString::fromLatin1(button.caption), this,
                            [this, kind = button.kind] { selectFromMenu(kind); });

    QMenu* view = menuBar()->addMenu(QStringLiteral("&View"));
    view->addAction(QStringLiteral("&Sign Preview"), this, [this] { m_shell.showSignPreview(); });
    view->addAction(QStringLiteral("Captions on &Phones..."), this,
                    [this] { m_shell.showPhoneCaptions(); });

    QMenu* help = menuBar()->addMenu(QStringLiteral("&Help"));
    help->addAction(QStringLiteral("&Help Contents               F1"), this,
                    [this] { showHelp(); });
    // The label that opens the reference stays hidden on the window, so the
    // menu is the operator's way to it.
    help->addAction(QStringLiteral("&Control Code Reference"), this,
                    [this] { lblControlCodes_Click(); });
    help->addSeparator();
    // F1 anywhere in the window, before any control sees the key.
    new QShortcut(QKeySequence(Qt::Key_F1), this, [this] { showHelp(); });
    help->addAction(QStringLiteral("&About QintraZelvan"), this, [this] { m_shell.showAbout(); });
}

// The pane reaches down to 100 twips above the status bar, and the exit
// button stands 100 twips above it; the window then keeps its size.
void frmTavo::formLoad() {
    resize(kWidth, kHeight);
    const int statusTop =
        kHeight - menuBar()->sizeHint().height() - statusBar()->sizeHint().height();
    const int exitHeight = 28;
    const int exitTop = statusTop - exitHeight - px(100);
    cmdExit->setGeometry(kWidth - 8 - 110, exitTop, 110, exitHeight);
    Label5->setGeometry(8, exitTop + 5, 80, 18);
    txtTotChars->setGeometry(90, exitTop + 2, 110, 24);
    QWidget* pane = m_read->widget();
    pane->setFixedHeight(statusTop - pane->y() - px(100));
    setFixedSize(kWidth, kHeight);
}

// A menu selection sets the option button as a click would, then runs the
// same handler; the signal is held so that the handler runs once. Choosing
// the filter that is already selected makes no second window (it would find
// its port taken by the first): it brings back the one the operator closed.
void frmTavo::selectFromMenu(FilterKind kind) {
    if (m_tavo.flag(kind)) {
        if (InputFilter* window = m_console.filterWindow(kind)) window->bringBack();
        return;
    }
    showFilterOption(kind);
    m_console.select(kind);
}

void frmTavo::addInputSetting(const QString& caption, bool checked,
                              std::function<void(bool)> onToggle) {
    const QList<QAction*> entries = mnuInput->actions();
    if (std::none_of(entries.begin(), entries.end(), [](QAction* a) { return a->isCheckable(); }))
        mnuInput->addSeparator();
    QAction* entry = mnuInput->addAction(caption);
    entry->setCheckable(true);
    entry->setChecked(checked);
    connect(entry, &QAction::toggled, this, std::move(onToggle));
}

void frmTavo::showFilterOption(FilterKind kind) {
    QRadioButton* rb = optionButton(kind);
    const QSignalBlocker hold(rb);
    rb->setChecked(true);
}

void frmTavo::showOutDWValue(int value) {
    const QSignalBlocker hold(chkOutDW);
    chkOutDW->setChecked(value == 1);
}

// Every queued byte sets the count: the box shows it once the burst is
// drained.
void frmTavo::setTotChars(const std::string& text) {
    m_totChars = text;
    m_labels.request();
}

void frmTavo::doStatus(const std::string& text) {
    m_status = text;
    m_labels.request();
}

void frmTavo::showNow() {
    m_labels.flush();
    m_statusPanel->repaint();
}

void frmTavo::showLabels() {
    const QString count = toQString(m_totChars);
    if (txtTotChars->text() != count) txtTotChars->setText(count);
    const QString status = toQString(m_status);
    if (m_statusPanel->text() != status) m_statusPanel->setText(status);
}

QString frmTavo::readHistoryText() const {
    m_read->flush();
    return m_read->widget()->toPlainText();
}
QString frmTavo::totCharsText() {
    m_labels.flush();
    return txtTotChars->text();
}
QString frmTavo::statusText() {
    m_labels.flush();
    return m_statusPanel->text();
}
QRadioButton* frmTavo::optionButton(FilterKind kind) const {
    return m_options[static_cast<std::size_t>(kind)];
}

void frmTavo::mnuFilePrefs_Click() {
    if (!m_prefs) m_prefs = new frmTavoPrefs(m_tavo, m_shell);
    m_prefs->show();
}

// A second click while the window is open reloads the reference into it.
void frmTavo::lblControlCodes_Click() {
    if (!m_ansi) m_ansi = new frmAnsiTable;
    m_ansi->show();
    m_ansi->loadFile(ansiReferencePath());
}

frmTavoPrefs* frmTavo::prefsWindow() const {
    return m_prefs;
}
frmAnsiTable* frmTavo::ansiWindow() const {
    return m_ansi;
}

bool frmTavo::eventFilter(QObject* watched, QEvent* e) {
    if (watched == lblControlCodes && e->type() == QEvent::MouseButtonRelease)
        lblControlCodes_Click();
    return QMainWindow::eventFilter(watched, e);
}

void frmTavo::showHelp() {
    m_shell.showHelp();
}

// Closing the window is the query step of the close box: it never returns
// from exitProgram in the running program.
void frmTavo::closeEvent(QCloseEvent* e) {
    e->ignore();
    m_tavo.exitProgram();
}

}  // namespace zelvan
