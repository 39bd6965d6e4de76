#pragma once
// The help browser "QintraZelvan - Help": a toolbar, an address box with the
// addresses visited (latest first) and a browser of local HTML pages. Every
// failure in it is ignored: a page that can't be found shows empty.

#include <QTextBrowser>
#include <QTimer>
#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;
class QToolBar;
class QDialog;

namespace zelvan {

// The browser control: local pages, loaded on the next turn of the event
// loop, so that a navigation is busy until then and can be stopped.
class HelpBrowser : public QTextBrowser {
    Q_OBJECT
  public:
    explicit HelpBrowser(QWidget* parent = nullptr);

    void Navigate(const QString& address);
    void GoBack() { backward(); }
    void GoForward() { forward(); }
    void GoHome() { Navigate(m_home); }
    void Refresh();
    void Stop();
    bool Busy() const { return m_load.isActive(); }
    QString LocationName() const;
    QString LocationURL() const;

    void setHomeAddress(const QString& address) { m_home = address; }
    QString homeAddress() const { return m_home; }
    // The address of the generated page that lists the help pages holding word.
    static QString searchAddress(const QString& word);

    QVariant loadResource(int type, const QUrl& name) override;

  signals:
    void DownloadComplete();
    void NavigateComplete(const QString& url);

  private:
    void finishLoad();

    QTimer m_load;
    QUrl m_pending;
    QUrl m_location;  // the page shown
    QString m_home;
};

class frmHelp : public QWidget {
    Q_OBJECT
  public:
    explicit frmHelp(QWidget* parent = nullptr);

    // Set before the window is shown: the page it opens when it loads.
    QString StartingAddress;

    HelpBrowser* browser() const { return brwWebBrowser; }
    QComboBox* addressBox() const { return cboAddress; }
    QTimer& timer() { return timTimer; }
    // A toolbar button as if clicked, by its key ("Back" ... "Search").
    void toolbarClick(const QString& key);
    // The search box's Find, for a word typed in it.
    void searchFor(const QString& word);
    QDialog* searchBox() const { return m_searchBox; }
    // One tick of timTimer, for a test that can't wait for a busy moment.
    void timerTick() { timTimer_Timer(); }

  protected:
    void showEvent(QShowEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    bool eventFilter(QObject* watched, QEvent* e) override;

  private:
    void formLoad();
    void layOut();
    void timTimer_Timer();
    void brwWebBrowser_DownloadComplete();
    void brwWebBrowser_NavigateComplete(const QString& url);
    void cboAddress_Click();
    void navigateTo(const QString& address);
    void showSearchBox();

    QToolBar* tbToolBar = nullptr;
    QWidget* picAddress = nullptr;
    QLabel* lblAddress = nullptr;
    QComboBox* cboAddress = nullptr;
    HelpBrowser* brwWebBrowser = nullptr;
    QTimer timTimer;
    bool bDontNavigateNow = false;
    bool m_loaded = false;
    QDialog* m_searchBox = nullptr;
    QLineEdit* m_searchWord = nullptr;
};

}  // namespace zelvan
