#pragma once
// The preferences window "Preferences": the section "General" of the
// settings, apart from the input filter. It binds its controls to PrefsForm.

#include <QDialog>

#include "support/tavoprefs.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;
class QTabWidget;

namespace zelvan {

class Shell;

class frmTavoPrefs : public QDialog {
    Q_OBJECT
  public:
    frmTavoPrefs(Tavo& tavo, Shell& shell, QWidget* parent = nullptr);

    PrefsForm& form() { return m_form; }

  private:
    void buildControls();
    void centre();
    void show_();  // the controls as the form's state has them
    void bind();

    PrefsForm m_form;
    Shell& m_shell;
    QTabWidget* tbsOptions = nullptr;
    QCheckBox* chkBeepOnMessage = nullptr;
    QCheckBox* chkStartupBarker = nullptr;
    QLineEdit* tbStartupBarker = nullptr;
    QCheckBox* chkObfuscate = nullptr;
    QListWidget* lbObfuscateType = nullptr;
    QLabel* Label1 = nullptr;
    QRadioButton* rbExitDisp[3] = {};
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPushButton* cmdApply = nullptr;
};

}  // namespace zelvan
