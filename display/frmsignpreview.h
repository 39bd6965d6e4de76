#pragma once
// "Sign Preview": the caption sign drawn from the bytes the display link wrote,
// three rows of 32 amber 5x7 cells, once as the sign's face shows it and once
// as the audience reads it in the reflector. The window follows the link on a
// timer of its own, at most 30 times a second, and paints only when the sign
// changed, so a frame never waits for it. It keeps its size and place in the
// settings section "SignPreview".

#include <QPixmap>
#include <QTimer>
#include <QWidget>

#include "display/signpreview.h"
#include "platform/settingsstore.h"

class QLabel;

namespace zelvan {

// Paints one side of the sign.
class LedSignView : public QWidget {
  public:
    LedSignView(const SignPreview& preview, SignSide side, QWidget* parent = nullptr);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* e) override;

  private:
    static QPoint dotPlace(double pitch, QPointF origin, int row, int column, int dc, int dr);
    static QPixmap dotPicture(double pitch, const QColor& colour);
    QPixmap darkBoard(double pitch, QPointF origin) const;

    const SignPreview& m_preview;
    SignSide m_side;
    QPixmap m_dark;
    QPixmap m_brightDot, m_dimDot;
    double m_dotPitch = 0;
};

class frmSignPreview : public QWidget {
  public:
    // Taps the link until the window goes.
    frmSignPreview(SerialLink& link, SettingsStore& store);
    ~frmSignPreview() override;

    const SignPreview& preview() const { return m_preview; }
    // One refresh at once, as the timer would run it.
    void refreshNow();
    QString statusText() const;

  protected:
    void moveEvent(QMoveEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;

  private:
    void restorePlace();
    void storePlace();

    SerialLink& m_link;
    SettingsStore& m_store;
    SignPreview m_preview;
    LedSignView* m_reflector = nullptr;
    LedSignView* m_face = nullptr;
    QLabel* m_status = nullptr;
    QTimer m_refresh;
    bool m_placed = false;  // the stored place is in; moves from now on are the operator's
};

}  // namespace zelvan
