#include "support/frmhelp.h"

#include <QComboBox>
#include <QDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolBar>

#include "support/datafiles.h"

namespace zelvan {

namespace {

// Layout measures come in twips (1440 to the inch), 15 to a pixel at 96 dpi.
constexpr int px(int twips) {
    return twips / 15;
}

const QString kSearchScheme = QStringLiteral("zelvan-search");

QUrl toUrl(const QString& address) {
    if (address.startsWith(kSearchScheme + ':') || address.startsWith(QStringLiteral("file:")))
        return QUrl(address);
    return QUrl::fromLocalFile(address);
}

QString emptyPage() {
    return QStringLiteral("<html><body></body></html>");
}

}  // namespace

// --- the browser control ---

HelpBrowser::HelpBrowser(QWidget* parent) : QTextBrowser(parent) {
    setOpenLinks(true);
    setOpenExternalLinks(false);
    m_load.setSingleShot(true);
    m_load.setInterval(0);
    connect(&m_load, &QTimer::timeout, this, [this] { finishLoad(); });
    // The browser reports the new address before it takes it as its source.
    connect(this, &QTextBrowser::sourceChanged, this, [this](const QUrl& url) {
        if (url.isEmpty()) return;  // the document cleared on the way to a page
        m_location = url;
        emit DownloadComplete();
        emit NavigateComplete(LocationURL());
    });
}

void HelpBrowser::Navigate(const QString& address) {
    m_pending = toUrl(address);
    m_load.start();
}

void HelpBrowser::finishLoad() {
    if (m_pending == m_location) {
        Refresh();  // the same page again: shown afresh, and still a navigation
        emit NavigateComplete(LocationURL());
        return;
    }
    setSource(m_pending);
}

void HelpBrowser::Refresh() {
    reload();
    emit DownloadComplete();
}

void HelpBrowser::Stop() {
    m_load.stop();
}

QString HelpBrowser::LocationName() const {
    const QString title = documentTitle();
    if (!title.isEmpty()) return title;
    const QUrl& url = m_location;
    return url.isLocalFile() ? QFileInfo(url.toLocalFile()).fileName() : url.toString();
}

QString HelpBrowser::LocationURL() const {
    const QUrl& url = m_location;
    return url.isLocalFile() ? url.toLocalFile() : url.toString();
}

QString HelpBrowser::searchAddress(const QString& word) {
    return kSearchScheme + ':' + word;
}

// Local files only; a page that isn't there shows empty, and the generated
// search page lists the pages in the folder of the help's home.
QVariant HelpBrowser::loadResource(int type, const QUrl& name) {
    const QUrl url = source().resolved(name);
    if (url.scheme() == kSearchScheme) {
        const QString folder = QFileInfo(m_home).absolutePath();
        return QString::fromStdString(
            helpSearchPage(folder.toStdString(), url.path().toStdString()));
    }
    const bool missing = !url.isLocalFile() || !QFileInfo(url.toLocalFile()).isFile();
    if (missing) return type == QTextDocument::HtmlResource ? QVariant(emptyPage()) : QVariant();
    return QTextBrowser::loadResource(type, url);
}

// --- the window ---

frmHelp::frmHelp(QWidget* parent) : QWidget(parent, Qt::Window) {
    setObjectName(QStringLiteral("frmHelp"));
    setWindowTitle(QStringLiteral("QintraZelvan - Help"));

    tbToolBar = new QToolBar(this);
    tbToolBar->setObjectName(QStringLiteral("tbToolBar"));
    tbToolBar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    for (const char* key : {"Back", "Forward", "Stop", "Refresh", "Home", "Search"}) {
        const QString k = QString::fromLatin1(key);
        tbToolBar->addAction(k, this, [this, k] { toolbarClick(k); });
    }

    picAddress = new QWidget(this);
    lblAddress = new QLabel(QStringLiteral("&Address:"), picAddress);
    lblAddress->setGeometry(px(50), px(30), 100, 18);
    cboAddress = new QComboBox(picAddress);
    cboAddress->setObjectName(QStringLiteral("cboAddress"));
    cboAddress->setEditable(true);
    cboAddress->setInsertPolicy(QComboBox::NoInsert);
    lblAddress->setBuddy(cboAddress);
    cboAddress->lineEdit()->installEventFilter(this);
    connect(cboAddress, &QComboBox::activated, this, [this] { cboAddress_Click(); });

    brwWebBrowser = new HelpBrowser(this);
    brwWebBrowser->setObjectName(QStringLiteral("brwWebBrowser"));
    connect(brwWebBrowser, &HelpBrowser::DownloadComplete, this,
            [this] { brwWebBrowser_DownloadComplete(); });
    connect(brwWebBrowser, &HelpBrowser::NavigateComplete, this,
            [this](const QString& url) { brwWebBrowser_NavigateComplete(url); });

    timTimer.setInterval(5);
    timTimer.setTimerType(Qt::PreciseTimer);
    connect(&timTimer, &QTimer::timeout, this, [this] { timTimer_Timer(); });
}

void frmHelp::showEvent(QShowEvent* e) {
    QWidget::showEvent(e);
    if (!m_loaded) formLoad();
}

void frmHelp::formLoad() {
    m_loaded = true;
    tbToolBar->update();
    layOut();
    cboAddress->move(px(50), lblAddress->geometry().bottom() + 1 + px(15));
    if (StartingAddress.isEmpty()) return;
    cboAddress->setEditText(StartingAddress);
    cboAddress->addItem(StartingAddress);
    brwWebBrowser->setHomeAddress(StartingAddress);
    timTimer.start();
    brwWebBrowser->Navigate(StartingAddress);
}

void frmHelp::resizeEvent(QResizeEvent* e) {
    QWidget::resizeEvent(e);
    layOut();
}

void frmHelp::layOut() {
    const int w = width();
    const int toolbarHeight = tbToolBar->sizeHint().height();
    tbToolBar->setGeometry(0, 0, w, toolbarHeight);
    const int comboHeight = cboAddress->sizeHint().height();
    const int comboTop = lblAddress->geometry().bottom() + 1 + px(15);
    picAddress->setGeometry(0, toolbarHeight, w, comboTop + comboHeight + px(60));
    cboAddress->setGeometry(px(50), comboTop, std::max(0, w - px(100)), comboHeight);
    const int top = picAddress->geometry().bottom() + 1;
    brwWebBrowser->setGeometry(px(50), top, std::max(0, w - px(100)),
                               std::max(0, height() - top - px(100)));
}

void frmHelp::timTimer_Timer() {
    if (brwWebBrowser->Busy()) {
        setWindowTitle(QStringLiteral("Working..."));
        return;
    }
    timTimer.stop();
    setWindowTitle(brwWebBrowser->LocationName());
}

void frmHelp::brwWebBrowser_DownloadComplete() {
    setWindowTitle(brwWebBrowser->LocationName());
}

// An address stands in the list once, the one visited last first.
void frmHelp::brwWebBrowser_NavigateComplete(const QString& url) {
    setWindowTitle(brwWebBrowser->LocationName());
    const int found = cboAddress->findText(url, Qt::MatchExactly | Qt::MatchCaseSensitive);
    bDontNavigateNow = true;
    if (found >= 0) cboAddress->removeItem(found);
    cboAddress->insertItem(0, url);
    cboAddress->setCurrentIndex(0);
    bDontNavigateNow = false;
}

void frmHelp::cboAddress_Click() {
    if (bDontNavigateNow) return;
    navigateTo(cboAddress->currentText());
}

void frmHelp::navigateTo(const QString& address) {
    timTimer.start();
    brwWebBrowser->Navigate(address);
}

// Enter in the address box goes to what was typed; the box itself then does
// nothing more with the key.
bool frmHelp::eventFilter(QObject* watched, QEvent* e) {
    if (watched == cboAddress->lineEdit() && e->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(e)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            navigateTo(cboAddress->currentText());
            return true;
        }
    }
    return QWidget::eventFilter(watched, e);
}

void frmHelp::toolbarClick(const QString& key) {
    timTimer.start();
    if (key == QLatin1String("Back"))
        brwWebBrowser->GoBack();
    else if (key == QLatin1String("Forward"))
        brwWebBrowser->GoForward();
    else if (key == QLatin1String("Refresh"))
        brwWebBrowser->Refresh();
    else if (key == QLatin1String("Home"))
        brwWebBrowser->GoHome();
    else if (key == QLatin1String("Search"))
        showSearchBox();
    else if (key == QLatin1String("Stop")) {
        timTimer.stop();
        brwWebBrowser->Stop();
        setWindowTitle(brwWebBrowser->LocationName());
    }
}

// The search box stays beside the help, modeless, so that a running capture
// goes on while the operator types.
void frmHelp::showSearchBox() {
    if (!m_searchBox) {
        m_searchBox = new QDialog(this);
        m_searchBox->setWindowTitle(QStringLiteral("Search the help"));
        auto* row = new QHBoxLayout(m_searchBox);
        row->addWidget(new QLabel(QStringLiteral("Word:"), m_searchBox));
        m_searchWord = new QLineEdit(m_searchBox);
        row->addWidget(m_searchWord);
        auto* find = new QPushButton(QStringLiteral("Find"), m_searchBox);
        find->setDefault(true);
        row->addWidget(find);
        connect(find, &QPushButton::clicked, this, [this] { searchFor(m_searchWord->text()); });
    }
    m_searchBox->show();
    m_searchBox->raise();
    m_searchWord->setFocus();
}

void frmHelp::searchFor(const QString& word) {
    if (word.trimmed().isEmpty()) return;
    navigateTo(HelpBrowser::searchAddress(word.trimmed()));
}

}  // namespace zelvan
