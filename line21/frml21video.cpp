#include "line21/frml21video.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "core/windowplace.h"
#include "platform/qtext.h"
#include "platform/qtmessagebox.h"

namespace zelvan {

namespace {

constexpr const char* kVideoFiles =
    "Video (*.ts *.m2ts *.mts *.trp *.mpg *.mpeg *.mp4 *.m4v *.mov *.mkv *.mxf);;All files (*)";

QLabel* makeLabel(QWidget* parent, const char* name) {
    auto* label = new QLabel(parent);
    label->setObjectName(QString::fromLatin1(name));
    return label;
}

}  // namespace

frmL21Video::frmL21Video(Tavo& tavo, InL21& memory, Shell& shell)
    : QWidget(nullptr, Qt::Window), panes(this), m_shell(shell), m_reader(tavo.dispatch()) {
    setObjectName(QStringLiteral("frmL21Video"));
    setWindowTitle(QString::fromLatin1(kL21VideoTitle));
    buildControls();
    m_input = std::make_unique<L21VideoInput>(tavo, memory, m_reader, *this);
    bindControls();
    setFixedSize(sizeHint());
}

frmL21Video::~frmL21Video() = default;

void frmL21Video::buildControls() {
    txtSource = new QLineEdit(this);
    txtSource->setObjectName(QStringLiteral("txtSource"));
    txtSource->setPlaceholderText(QStringLiteral("File, or URL (udp://, rtp://, http://, srt://)"));
    cmdBrowse = makeButton(this, "cmdBrowse", "Browse...");
    cmdOpen = makeButton(this, "cmdOpen", "Open");
    obField1 = new QRadioButton(QStringLiteral("Field 1 (CC1/CC2)"), this);
    obField1->setObjectName(QStringLiteral("obField1"));
    obField2 = new QRadioButton(QStringLiteral("Field 2 (CC3/CC4)"), this);
    obField2->setObjectName(QStringLiteral("obField2"));
    chkLoop = new QCheckBox(QStringLiteral("Loop"), this);
    chkLoop->setObjectName(QStringLiteral("chkLoop"));
    lblStream = makeLabel(this, "lblStream");
    lblPosition = makeLabel(this, "lblPosition");
    lblPairs = makeLabel(this, "lblPairs");
    lblNotice = makeNoticeLabel(this);
    layOutControls();
}

// The source on top, then the field, Loop and what the source carries; below,
// the two banks as in the other line-21 windows.
void frmL21Video::layOutControls() {
    auto* source = new QHBoxLayout;
    source->addWidget(new QLabel(QStringLiteral("Source:"), this));
    source->addWidget(txtSource, 1);
    source->addWidget(cmdBrowse);
    source->addWidget(cmdOpen);

    auto* options = new QHBoxLayout;
    options->addWidget(obField1);
    options->addWidget(obField2);
    options->addWidget(chkLoop);
    options->addStretch();
    options->addWidget(panes.cmdFlip);
    options->addWidget(panes.cmdInit);

    auto* state = new QGridLayout;
    state->addWidget(new QLabel(QStringLiteral("Captions in:"), this), 0, 0);
    state->addWidget(lblStream, 0, 1, 1, 3);
    state->addWidget(new QLabel(QStringLiteral("Position:"), this), 1, 0);
    state->addWidget(lblPosition, 1, 1);
    state->addWidget(new QLabel(QStringLiteral("Caption pairs:"), this), 1, 2);
    state->addWidget(lblPairs, 1, 3);
    state->setColumnStretch(1, 1);
    state->setColumnStretch(3, 1);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(source);
    layout->addLayout(options);
    layout->addLayout(state);
    layout->addWidget(lblNotice);
    layout->addLayout(panes.banksLayout());
}

void frmL21Video::bindControls() {
    L21VideoInput* in = m_input.get();
    connect(cmdOpen, &QPushButton::clicked, this, [in] { in->cmdOpen_Click(); });
    connect(cmdBrowse, &QPushButton::clicked, this, [this] { cmdBrowse_Click(); });
    connect(txtSource, &QLineEdit::textChanged, this,
            [in](const QString& text) { in->txtSource_Change(text.toStdString()); });
    connect(obField1, &QRadioButton::toggled, this, [in](bool on) {
        if (on) in->obField_Click(1);
    });
    connect(obField2, &QRadioButton::toggled, this, [in](bool on) {
        if (on) in->obField_Click(2);
    });
    connect(chkLoop, &QCheckBox::toggled, this, [in](bool on) { in->chkLoop_Click(on); });
    panes.bind(*in);
    new QShortcut(QKeySequence(Qt::Key_F1), this, [this] { m_shell.showHelp(); });
}

// The chosen file replaces the source; it opens with the next press of Open.
void frmL21Video::cmdBrowse_Click() {
    const QString file = QFileDialog::getOpenFileName(
        this, QStringLiteral("Open video"), txtSource->text(), QString::fromLatin1(kVideoFiles));
    if (!file.isEmpty()) txtSource->setText(file);
}

void frmL21Video::placeWindow() {
    placeUnderMainWindow(this);
}

void frmL21Video::showWindow() {
    showOwnedByMainWindow(this);
}

void frmL21Video::messageBox(const std::string& text, const std::string& detail) {
    showMessageBox(this, text, detail);
}

void frmL21Video::setOpenCaption(const std::string& caption) {
    cmdOpen->setText(toQString(caption));
}

void frmL21Video::showSettings(const VideoSettings& settings) {
    const QSignalBlocker a(txtSource), b(obField1), c(obField2), d(chkLoop);
    txtSource->setText(QString::fromStdString(settings.Source));  // a path: UTF-8
    (settings.Field == 2 ? obField2 : obField1)->setChecked(true);
    chkLoop->setChecked(settings.Loop);
}

void frmL21Video::showStream(const std::string& text) {
    lblStream->setText(QString::fromStdString(text));
}

void frmL21Video::showPosition(long long ms) {
    m_positionMs = ms;
    m_playState.request();
}

void frmL21Video::showPairCount(long count) {
    m_pairCount = count;
    m_playState.request();
}

void frmL21Video::showPlayState() {
    lblPairs->setText(QString::number(m_pairCount));
    const long long tenths = m_positionMs / 100;
    lblPosition->setText(QStringLiteral("%1:%2.%3")
                             .arg(tenths / 600)
                             .arg(tenths / 10 % 60, 2, 10, QLatin1Char('0'))
                             .arg(tenths % 10));
}

void frmL21Video::setNotice(const std::string& text) {
    lblNotice->setText(toQString(text));
}

// The operator can't close it; only hideForm takes it away.
void frmL21Video::closeEvent(QCloseEvent* e) {
    e->ignore();
}

}  // namespace zelvan
