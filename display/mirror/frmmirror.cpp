#include "display/mirror/frmmirror.h"

#include <qrencode.h>

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QNetworkInterface>
#include <QPixmap>
#include <QSpinBox>
#include <QVBoxLayout>

namespace zelvan {

namespace {

constexpr int kQuietModules = 4;
constexpr int kQrScale = 8;
constexpr const char* kEveryNetwork = "0.0.0.0";

}  // namespace

QImage qrCodeImage(const std::string& text, int scale) {
    QRcode* code = QRcode_encodeString(text.c_str(), 0, QR_ECLEVEL_M, QR_MODE_8, 1);
    if (!code) return {};
    const int side = code->width + 2 * kQuietModules;
    QImage image(side, side, QImage::Format_Grayscale8);
    image.fill(Qt::white);
    for (int y = 0; y < code->width; ++y)
        for (int x = 0; x < code->width; ++x)
            if (code->data[y * code->width + x] & 1)
                image.setPixel(x + kQuietModules, y + kQuietModules, qRgb(0, 0, 0));
    QRcode_free(code);
    return image.scaled(side * scale, side * scale, Qt::IgnoreAspectRatio, Qt::FastTransformation);
}

frmMirror::frmMirror(WebMirror& mirror) : QWidget(nullptr, Qt::Window), m_mirror(mirror) {
    setObjectName(QStringLiteral("frmMirror"));
    setWindowTitle(QStringLiteral("Captions on Phones"));
    m_chkOn = new QCheckBox(QStringLiteral("Show the captions on phones"));
    m_chkOn->setObjectName(QStringLiteral("chkMirrorOn"));
    m_cboAddress = new QComboBox;
    m_cboAddress->setObjectName(QStringLiteral("cboAddress"));
    m_cboAddress->setEditable(true);
    m_cboAddress->setToolTip(QStringLiteral(
        "127.0.0.1 serves this computer only; phones need an address on the venue's network, "
        "or 0.0.0.0 for every network"));
    m_txtPort = new QSpinBox;
    m_txtPort->setObjectName(QStringLiteral("txtPort"));
    m_txtPort->setRange(1, 65535);
    m_lblAddress = new QLabel;
    m_lblAddress->setObjectName(QStringLiteral("lblMirrorAddress"));
    m_lblAddress->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_lblAddress->setStyleSheet(QStringLiteral("font-size: 18pt; font-weight: bold;"));
    m_lblQrCode = new QLabel;
    m_lblQrCode->setObjectName(QStringLiteral("lblQrCode"));
    m_lblQrCode->setAlignment(Qt::AlignCenter);
    m_lblReaders = new QLabel;
    m_lblReaders->setObjectName(QStringLiteral("lblReaders"));
    m_lblReaders->setWordWrap(true);

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("&Address:"), m_cboAddress);
    form->addRow(QStringLiteral("&Port:"), m_txtPort);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_chkOn);
    layout->addLayout(form);
    layout->addWidget(m_lblAddress);
    layout->addWidget(m_lblQrCode, 1);
    layout->addWidget(m_lblReaders);

    fillAddresses();
    const MirrorSettings& s = m_mirror.settings();
    m_chkOn->setChecked(s.enabled);
    m_cboAddress->setCurrentText(QString::fromStdString(s.address));
    m_txtPort->setValue(s.port);
    connect(m_chkOn, &QCheckBox::toggled, this, [this] { applyChoice(); });
    connect(m_cboAddress, &QComboBox::activated, this, [this] { applyChoice(); });
    connect(m_cboAddress->lineEdit(), &QLineEdit::editingFinished, this, [this] { applyChoice(); });
    connect(m_txtPort, &QSpinBox::editingFinished, this, [this] { applyChoice(); });
    refreshNow();
    m_refresh.setInterval(kRefreshMs);
    connect(&m_refresh, &QTimer::timeout, this, [this] { refreshNow(); });
    m_refresh.start();
}

// This computer only, each of its addresses on a network, and all of them.
void frmMirror::fillAddresses() {
    m_cboAddress->addItem(QStringLiteral("127.0.0.1"));
    for (const QHostAddress& a : QNetworkInterface::allAddresses())
        if (!a.isLoopback() && a.protocol() == QAbstractSocket::IPv4Protocol)
            m_cboAddress->addItem(a.toString());
    m_cboAddress->addItem(QString::fromLatin1(kEveryNetwork));
}

void frmMirror::applyChoice() {
    MirrorSettings s = m_mirror.settings();
    s.enabled = m_chkOn->isChecked();
    s.address = m_cboAddress->currentText().trimmed().toStdString();
    s.port = static_cast<std::uint16_t>(m_txtPort->value());
    m_mirror.apply(s);
    refreshNow();
}

void frmMirror::refreshNow() {
    const bool on = m_mirror.running();
    const std::string url = on ? m_mirror.url() : std::string();
    if (url != m_shownUrl) {
        m_shownUrl = url;
        m_lblAddress->setText(on ? QString::fromStdString(url) : QStringLiteral("Off"));
        m_lblQrCode->setPixmap(on ? QPixmap::fromImage(qrCodeImage(url, kQrScale)) : QPixmap());
    }
    if (!m_mirror.error().empty()) {
        m_lblReaders->setText(QString::fromStdString(m_mirror.error()));
        return;
    }
    const std::size_t n = m_mirror.readers();
    m_lblReaders->setText(
        on ? QStringLiteral("%1 %2 connected")
                 .arg(n)
                 .arg(n == 1 ? QStringLiteral("reader") : QStringLiteral("readers"))
           : QString());
}

}  // namespace zelvan
