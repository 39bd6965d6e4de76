#pragma once
// "About QintraZelvan": the splash at start-up (gone after 5 seconds or a key)
// and the About box of the Help menu (stays until closed).

#include <QDialog>
#include <QTimer>

class QLabel;

namespace zelvan {

class frmSplash : public QDialog {
    Q_OBJECT
  public:
    explicit frmSplash(QWidget* parent = nullptr);
    // Start-up gives the timer its 5000 ms; the About box leaves it at none.
    QTimer timerSplashGoAway;

  protected:
    void keyPressEvent(QKeyEvent* e) override;
    bool eventFilter(QObject* watched, QEvent* e) override;

  private:
    void timerSplashGoAway_Timer();

    QLabel* lblProductName = nullptr;
    QLabel* lblVersion = nullptr;
    QLabel* lblPlatform = nullptr;
};

}  // namespace zelvan
