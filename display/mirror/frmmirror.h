#pragma once
// "Captions on Phones": turns the web mirror on and off, chooses the network
// it serves, and shows the address to type with a QR code of it that the
// venue can print or project, and how many readers are connected.

#include <QImage>
#include <QTimer>
#include <QWidget>

#include "display/mirror/webmirror.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QSpinBox;

namespace zelvan {

// The QR code of the text, black on white, `scale` pixels a module, with the
// quiet zone of four modules round it; a null image if it can't be made.
QImage qrCodeImage(const std::string& text, int scale);

class frmMirror : public QWidget {
  public:
    static constexpr int kRefreshMs = 500;

    explicit frmMirror(WebMirror& mirror);

    // Shows the mirror's state now, as the timer would.
    void refreshNow();

  private:
    void applyChoice();
    void fillAddresses();

    WebMirror& m_mirror;
    QCheckBox* m_chkOn = nullptr;
    QComboBox* m_cboAddress = nullptr;
    QSpinBox* m_txtPort = nullptr;
    QLabel* m_lblAddress = nullptr;
    QLabel* m_lblQrCode = nullptr;
    QLabel* m_lblReaders = nullptr;
    std::string m_shownUrl;
    QTimer m_refresh;
};

}  // namespace zelvan
