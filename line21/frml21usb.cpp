#include "line21/frml21usb.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "core/windowplace.h"
#include "line21/memorypanes.h"
#include "platform/qtext.h"

namespace zelvan {

frmL21USB::frmL21USB(Tavo& tavo, InL21& memory, BoardLibrary& library, Shell& shell)
    : QWidget(nullptr, Qt::Window), m_tavo(tavo), m_shell(shell) {
    setObjectName(QStringLiteral("frmL21USB"));
    setWindowTitle(QString::fromLatin1(kL21USBTitle));
    buildControls();
    // The load fills the board list, so the controls come first.
    m_input = std::make_unique<L21BoardInput>(tavo, memory, library, *this);
    bindControls();
    setFixedSize(sizeHint());
}

frmL21USB::~frmL21USB() = default;

void frmL21USB::buildControls() {
    cboBrdLst = new QComboBox(this);
    cboBrdLst->setObjectName(QStringLiteral("cboBrdLst"));
    cboBrdLst->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    cboBrdLst->setMinimumWidth(cboBrdLst->fontMetrics().horizontalAdvance(
                                   QStringLiteral("PCI-VLTC/RDR (rev. A1 )  at  CC00")) +
                               40);
    // Capture starts by itself; the button and the channel list are out of sight.
    cmdStart = makeButton(this, "cmdStart", "Start");
    lbChannel = new QListWidget(this);
    lbChannel->setObjectName(QStringLiteral("lbChannel"));
    for (const char* name : line21::channelNames) lbChannel->addItem(QString::fromLatin1(name));
    cmdStart->hide();
    lbChannel->hide();

    rtbDM = makePane(this, "rtbDM");
    rtbNM = makePane(this, "rtbNM");
    cmdEDM = makeButton(this, "cmdEDM", "Erase");
    cmdFillDM = makeButton(this, "cmdFillDM", "Fill");
    cmdShowDM = makeButton(this, "cmdShowDM", "Show");
    cmdENM = makeButton(this, "cmdENM", "Erase");
    cmdFillNM = makeButton(this, "cmdFillNM", "Fill");
    cmdShowNM = makeButton(this, "cmdShowNM", "Show");
    cmdFlip = makeButton(this, "cmdFlip", "FLIP");
    cmdInit = makeButton(this, "cmdInit", "INIT");
    layOutControls();
}

// The board list and the bank-wide buttons on top; below, the two banks side
// by side, each with its test buttons underneath.
void frmL21USB::layOutControls() {
    auto* top = new QHBoxLayout;
    top->addWidget(new QLabel(QStringLiteral("Device:"), this));
    top->addWidget(cboBrdLst);
    top->addStretch();
    top->addWidget(cmdFlip);
    top->addWidget(cmdInit);

    auto* dm = new QVBoxLayout;
    dm->addLayout(memoryBlock(this, "Displayed Memory:", rtbDM));
    dm->addLayout(testRow(this, "Disp:", cmdEDM, cmdFillDM, cmdShowDM));
    auto* nm = new QVBoxLayout;
    nm->addLayout(memoryBlock(this, "Non-Displayed Memory:", rtbNM));
    nm->addLayout(testRow(this, "NonDisp:", cmdENM, cmdFillNM, cmdShowNM));
    auto* memories = new QHBoxLayout;
    memories->addLayout(dm);
    memories->addSpacing(12);
    memories->addLayout(nm);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(memories);
}

void frmL21USB::bindControls() {
    L21BoardInput* in = m_input.get();
    // However the choice is made; the logic's own entries and choice come
    // through with the signal held.
    connect(cboBrdLst, &QComboBox::currentIndexChanged, this,
            [in](int index) { in->cboBrdLst_Click(index); });
    connect(cmdStart, &QPushButton::clicked, this, [in] { in->cmdStart_Click(); });
    connect(lbChannel, &QListWidget::currentRowChanged, this,
            [in](int row) { in->lbChannel_Click(static_cast<std::int16_t>(row)); });
    connect(cmdEDM, &QPushButton::clicked, this, [in] { in->cmdEDM_Click(); });
    connect(cmdFillDM, &QPushButton::clicked, this, [in] { in->cmdFillDM_Click(); });
    connect(cmdShowDM, &QPushButton::clicked, this, [in] { in->cmdShowDM_Click(); });
    connect(cmdENM, &QPushButton::clicked, this, [in] { in->cmdENM_Click(); });
    connect(cmdFillNM, &QPushButton::clicked, this, [in] { in->cmdFillNM_Click(); });
    connect(cmdShowNM, &QPushButton::clicked, this, [in] { in->cmdShowNM_Click(); });
    connect(cmdFlip, &QPushButton::clicked, this, [in] { in->cmdFlip_Click(); });
    connect(cmdInit, &QPushButton::clicked, this, [in] { in->cmdInit_Click(); });
    // F1 anywhere in the window, before any control sees the key.
    new QShortcut(QKeySequence(Qt::Key_F1), this, [this] { m_shell.showHelp(); });
}

void frmL21USB::placeWindow() {
    placeUnderMainWindow(this);
}

// Without a window manager nothing may ever activate the window, so the first
// turn of the event loop after it is shown counts as its first activation
// too; whichever comes first starts capture, and the other finds it started.
void frmL21USB::showWindow() {
    showOwnedByMainWindow(this);
    QPointer<frmL21USB> self(this);
    m_tavo.dispatch().post([self] {
        if (self && self->isVisible()) self->m_input->Form_Activate();
    });
}

void frmL21USB::hideWindow() {
    hide();
}

bool frmL21USB::event(QEvent* e) {
    if (e->type() == QEvent::WindowActivate && isVisible()) {
        const bool handled = QWidget::event(e);
        m_input->Form_Activate();
        return handled;
    }
    return QWidget::event(e);
}

void frmL21USB::addBoardEntry(const std::string& text) {
    const QSignalBlocker hold(cboBrdLst);
    cboBrdLst->addItem(toQString(text));
}

void frmL21USB::showBoardSelection(int index) {
    const QSignalBlocker hold(cboBrdLst);
    cboBrdLst->setCurrentIndex(index);
}

void frmL21USB::setDMText(const std::string& text) {
    m_dmText = text;
    m_dmRefresh.request();
}

void frmL21USB::setNMText(const std::string& text) {
    m_nmText = text;
    m_nmRefresh.request();
}

void frmL21USB::showPaneText(QPlainTextEdit* pane, const std::string& text) {
    const QString shown = toQString(text);
    if (pane->toPlainText() != shown) pane->setPlainText(shown);
}

void frmL21USB::showChannel(std::int16_t index) {
    const QSignalBlocker hold(lbChannel);
    lbChannel->setCurrentRow(index);
}

// The operator can't close it; only hideForm takes it away.
void frmL21USB::closeEvent(QCloseEvent* e) {
    e->ignore();
}

}  // namespace zelvan
