#include "line21/frml21usb.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "core/windowplace.h"
#include "line21/memorypanes.h"
#include "platform/qtext.h"

namespace zelvan {

frmL21USB::frmL21USB(Tavo& tavo, InL21& memory, BoardLibrary& library, Shell& shell)
    : QWidget(nullptr, Qt::Window), panes(this), m_tavo(tavo), m_shell(shell) {
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
    // Capture starts by itself; the button is out of sight.
    cmdStart = makeButton(this, "cmdStart", "Start");
    cmdStart->hide();
    layOutControls();
}

// The board list and the bank-wide buttons on top; below, the two banks side
// by side, each with its test buttons underneath.
void frmL21USB::layOutControls() {
    auto* top = new QHBoxLayout;
    top->addWidget(new QLabel(QStringLiteral("Device:"), this));
    top->addWidget(cboBrdLst);
    top->addStretch();
    top->addWidget(panes.cmdFlip);
    top->addWidget(panes.cmdInit);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(panes.banksLayout());
}

void frmL21USB::bindControls() {
    L21BoardInput* in = m_input.get();
    // However the choice is made; the logic's own entries and choice come
    // through with the signal held.
    connect(cboBrdLst, &QComboBox::currentIndexChanged, this,
            [in](int index) { in->cboBrdLst_Click(index); });
    connect(cmdStart, &QPushButton::clicked, this, [in] { in->cmdStart_Click(); });
    panes.bind(*in);
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

// The operator can't close it; only hideForm takes it away.
void frmL21USB::closeEvent(QCloseEvent* e) {
    e->ignore();
}

}  // namespace zelvan
