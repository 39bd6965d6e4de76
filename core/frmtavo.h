#pragma once
// The main window "Zelvan 21": the history panes, the filter selection, the
// status line and the menus. It owns the console logic and binds to it.

#include <QMainWindow>
#include <QPointer>
#include <array>
#include <functional>
#include <memory>

#include "core/mainconsole.h"
#include "core/mainview.h"
#include "core/qthistorypane.h"
#include "platform/deferredrefresh.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QRadioButton;
class QStatusBar;

namespace zelvan {

class frmAnsiTable;
class frmTavoPrefs;

class frmTavo : public QMainWindow, public MainView {
    Q_OBJECT
  public:
    frmTavo(Tavo& tavo, Shell& shell);
    ~frmTavo() override;

    MainConsole& console() { return m_console; }

    HistoryPane& rtbRawHistory() override { return *m_raw; }
    HistoryPane& rtbReadHistory() override { return *m_read; }
    void setTotChars(const std::string& text) override;
    void doStatus(const std::string& text) override;
    void showFilterOption(FilterKind kind) override;
    void showOutDWValue(int value) override;
    void showNow() override;

    // For tests and screenshots: what the operator reads.
    QString readHistoryText() const;
    QString totCharsText();
    QString statusText();
    QRadioButton* optionButton(FilterKind kind) const;

    // A checkable entry at the foot of the Input menu for a setting of the
    // input filters; onToggle applies and saves it.
    void addInputSetting(const QString& caption, bool checked, std::function<void(bool)> onToggle);
    // mnuFilePrefs: the one preferences window, made afresh once closed.
    void mnuFilePrefs_Click();
    // The label is hidden, so no click reaches it on screen; the reference
    // window opens from here all the same.
    void lblControlCodes_Click();
    frmTavoPrefs* prefsWindow() const;
    frmAnsiTable* ansiWindow() const;

  protected:
    void closeEvent(QCloseEvent* e) override;
    bool eventFilter(QObject* watched, QEvent* e) override;

  private:
    void buildControls();
    void buildMenus();
    void formLoad();
    void selectFromMenu(FilterKind kind);
    void showHelp();
    void showLabels();

    Tavo& m_tavo;
    Shell& m_shell;
    MainConsole m_console;
    QGroupBox* Frame1 = nullptr;
    QGroupBox* Frame2 = nullptr;
    std::array<QRadioButton*, kFilterCount> m_options{};
    QCheckBox* chkOutDW = nullptr;
    QCheckBox* chkOutQT = nullptr;
    QCheckBox* chkOutRT = nullptr;
    QCheckBox* chkOutWT = nullptr;
    std::unique_ptr<QtHistoryPane> m_raw;
    std::unique_ptr<QtHistoryPane> m_read;
    QLabel* Label1 = nullptr;
    QLabel* Label2 = nullptr;
    QLabel* Label5 = nullptr;
    QLineEdit* txtTotChars = nullptr;
    QLabel* lblControlCodes = nullptr;
    QPushButton* cmdExit = nullptr;
    QLabel* m_statusPanel = nullptr;
    QMenu* mnuInput = nullptr;
    // The count and the status line as the pipeline last set them.
    std::string m_totChars, m_status;
    DeferredRefresh m_labels{[this] { showLabels(); }};
    // Flags behind the hidden output boxes; nothing reads them.
    bool bOutQT = false, bOutRT = false, bOutWT = false;
    QPointer<frmTavoPrefs> m_prefs;
    QPointer<frmAnsiTable> m_ansi;
};

}  // namespace zelvan
