#include "line21/memorypanes.h"

#include <QApplication>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWindow>

#include "line21/l21tables.h"
#include "line21/l21window.h"
#include "platform/qtext.h"

namespace zelvan {

namespace {

using line21::kCols;
using line21::kRows;

// Column numbers 1-32 as two lines, tens above units.
QString columnRulerText() {
    QString tens, units;
    for (int c = 1; c <= kCols; ++c) {
        tens += c >= 10 ? QChar(u'0' + c / 10) : QChar(u' ');
        units += QChar(u'0' + c % 10);
    }
    return tens + u'\n' + units;
}

// Row numbers 1-15, one a line, right-aligned.
QString rowRulerText() {
    QStringList rows;
    for (int r = 1; r <= kRows; ++r) rows << QStringLiteral("%1").arg(r, 2);
    return rows.join(u'\n');
}

// Sizes a text box to show `cols` characters on each of `lines` lines, without
// scroll bars, in its fixed-pitch font.
void fitText(QPlainTextEdit* edit, int cols, int lines) {
    const QFontMetrics fm(edit->font());
    const int margin = static_cast<int>(edit->document()->documentMargin());
    const QMargins frame = edit->contentsMargins();
    const int extra = 2 * edit->frameWidth() + frame.left() + frame.right() + 2 * margin;
    // A few pixels more than the text needs, so the caret cell at column 32 fits.
    const int width = fm.horizontalAdvance(QString(cols, u'0')) + extra + 4;
    const int height = lines * fm.lineSpacing() + extra + 2;
    edit->setFixedSize(width, height);
}

QPlainTextEdit* makeTextBox(QWidget* parent) {
    auto* edit = new QPlainTextEdit(parent);
    edit->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    edit->setReadOnly(true);
    edit->setUndoRedoEnabled(false);
    edit->setLineWrapMode(QPlainTextEdit::NoWrap);
    edit->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    edit->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The style sets the frame when it polishes the box; sizes are measured after.
    edit->ensurePolished();
    return edit;
}

// A ruler is a text box like the pane, so that its characters and lines fall
// on the pane's grid exactly. It has no frame and can't be focused or
// selected; it stands inside the pane's frame width, where the pane's text
// starts too.
QPlainTextEdit* makeRuler(QWidget* parent, const QString& text) {
    QPlainTextEdit* ruler = makeTextBox(parent);
    ruler->setFrameShape(QFrame::NoFrame);
    ruler->setFocusPolicy(Qt::NoFocus);
    ruler->setTextInteractionFlags(Qt::NoTextInteraction);
    ruler->viewport()->setCursor(Qt::ArrowCursor);
    QPalette pal = ruler->palette();
    pal.setColor(QPalette::Base, pal.color(QPalette::Window));
    pal.setColor(QPalette::Text, pal.color(QPalette::PlaceholderText));
    ruler->setPalette(pal);
    ruler->setPlainText(text);
    return ruler;
}

void showPaneText(QPlainTextEdit* pane, const std::string& text) {
    const QString shown = toQString(text);
    if (pane->toPlainText() != shown) pane->setPlainText(shown);
}

}  // namespace

// A memory pane: 15 lines of 32 characters.
QPlainTextEdit* makePane(QWidget* parent, const char* name) {
    QPlainTextEdit* pane = makeTextBox(parent);
    pane->setObjectName(QString::fromLatin1(name));
    fitText(pane, kCols, kRows);
    return pane;
}

// The label above, the column ruler, the row ruler beside and the pane.
QGridLayout* memoryBlock(QWidget* parent, const char* label, QPlainTextEdit* pane) {
    const int frame = pane->frameWidth();
    QPlainTextEdit* columns = makeRuler(parent, columnRulerText());
    columns->setObjectName(pane->objectName() + QStringLiteral("Columns"));
    fitText(columns, kCols, 2);
    columns->setFixedWidth(pane->width() - 2 * frame);
    QPlainTextEdit* rows = makeRuler(parent, rowRulerText());
    rows->setObjectName(pane->objectName() + QStringLiteral("Rows"));
    fitText(rows, 2, kRows);
    rows->setFixedHeight(pane->height() - 2 * frame);

    auto* grid = new QGridLayout;
    grid->setSpacing(0);
    grid->addWidget(new QLabel(QString::fromLatin1(label), parent), 0, 0, 1, 2);
    grid->addWidget(columns, 1, 1, Qt::AlignHCenter);
    grid->addWidget(rows, 2, 0, Qt::AlignVCenter);
    grid->addWidget(pane, 2, 1);
    return grid;
}

QPushButton* makeButton(QWidget* parent, const char* name, const char* caption) {
    auto* button = new QPushButton(QString::fromLatin1(caption), parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoDefault(false);
    return button;
}

// "Disp:" or "NonDisp:" and its three test buttons.
QHBoxLayout* testRow(QWidget* parent, const char* label, QPushButton* erase, QPushButton* fill,
                     QPushButton* show) {
    auto* row = new QHBoxLayout;
    auto* text = new QLabel(QString::fromLatin1(label), parent);
    text->setMinimumWidth(text->fontMetrics().horizontalAdvance(QStringLiteral("NonDisp:")) + 4);
    row->addWidget(text);
    for (QPushButton* b : {erase, fill, show}) row->addWidget(b);
    row->addStretch();
    return row;
}

MemoryPanes::MemoryPanes(QWidget* window)
    : lbChannel(new QListWidget(window)),
      rtbDM(makePane(window, "rtbDM")),
      rtbNM(makePane(window, "rtbNM")),
      cmdEDM(makeButton(window, "cmdEDM", "Erase")),
      cmdFillDM(makeButton(window, "cmdFillDM", "Fill")),
      cmdShowDM(makeButton(window, "cmdShowDM", "Show")),
      cmdENM(makeButton(window, "cmdENM", "Erase")),
      cmdFillNM(makeButton(window, "cmdFillNM", "Fill")),
      cmdShowNM(makeButton(window, "cmdShowNM", "Show")),
      cmdFlip(makeButton(window, "cmdFlip", "FLIP")),
      cmdInit(makeButton(window, "cmdInit", "INIT")),
      m_window(window),
      m_dmRefresh([this] { showPaneText(rtbDM, m_dmText); }),
      m_nmRefresh([this] { showPaneText(rtbNM, m_nmText); }) {
    lbChannel->setObjectName(QStringLiteral("lbChannel"));
    for (const char* name : line21::channelNames) lbChannel->addItem(QString::fromLatin1(name));
    lbChannel->hide();  // there, out of sight: the channel starts at CC1
}

QHBoxLayout* MemoryPanes::banksLayout() {
    auto* dm = new QVBoxLayout;
    dm->addLayout(memoryBlock(m_window, "Displayed Memory:", rtbDM));
    dm->addLayout(testRow(m_window, "Disp:", cmdEDM, cmdFillDM, cmdShowDM));
    auto* nm = new QVBoxLayout;
    nm->addLayout(memoryBlock(m_window, "Non-Displayed Memory:", rtbNM));
    nm->addLayout(testRow(m_window, "NonDisp:", cmdENM, cmdFillNM, cmdShowNM));
    auto* banks = new QHBoxLayout;
    banks->addLayout(dm);
    banks->addSpacing(12);
    banks->addLayout(nm);
    return banks;
}

void MemoryPanes::bind(L21Window& input) {
    L21Window* in = &input;
    QObject::connect(lbChannel, &QListWidget::currentRowChanged, m_window,
                     [in](int row) { in->lbChannel_Click(static_cast<std::int16_t>(row)); });
    const std::pair<QPushButton*, void (L21Window::*)()> buttons[] = {
        {cmdEDM, &L21Window::cmdEDM_Click},       {cmdFillDM, &L21Window::cmdFillDM_Click},
        {cmdShowDM, &L21Window::cmdShowDM_Click}, {cmdENM, &L21Window::cmdENM_Click},
        {cmdFillNM, &L21Window::cmdFillNM_Click}, {cmdShowNM, &L21Window::cmdShowNM_Click},
        {cmdFlip, &L21Window::cmdFlip_Click},     {cmdInit, &L21Window::cmdInit_Click},
    };
    for (auto [button, click] : buttons)
        QObject::connect(button, &QPushButton::clicked, m_window, [in, click] { (in->*click)(); });
}

void MemoryPanes::setDMText(const std::string& text) {
    m_dmText = text;
    m_dmRefresh.request();
}

void MemoryPanes::setNMText(const std::string& text) {
    m_nmText = text;
    m_nmRefresh.request();
}

void MemoryPanes::showChannel(std::int16_t index) {
    const QSignalBlocker hold(lbChannel);
    lbChannel->setCurrentRow(index);
}

QWidget* mainWindow() {
    for (QWidget* top : QApplication::topLevelWidgets())
        if (top->objectName() == QLatin1String("frmTavo")) return top;
    return nullptr;
}

void showOwnedByMainWindow(QWidget* w) {
    if (QWidget* main = mainWindow()) {
        w->winId();
        main->winId();
        w->windowHandle()->setTransientParent(main->windowHandle());
    }
    w->show();
}

}  // namespace zelvan
