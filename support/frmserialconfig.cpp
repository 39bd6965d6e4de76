#include "support/frmserialconfig.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/devicechooser.h"
#include "platform/devicemap.h"
#include "platform/portchoices.h"

namespace zelvan {

namespace {

template <std::size_t N>
void fill(QComboBox* box, const std::array<PortChoice, N>& choices) {
    for (const PortChoice& c : choices) box->addItem(QString::fromLatin1(c.text), c.value);
}

// A list with no entry for the component's value shows no selection, and OK
// then leaves that value as it is: nothing sound can be chosen for the
// operator, and this program never produces such values itself.
void writeList(QComboBox* box, SerialPort& port, void (SerialPort::*set)(std::int32_t)) {
    if (box->currentIndex() >= 0) (port.*set)(box->currentData().toInt());
}

}  // namespace

frmSerialConfig::frmSerialConfig(SerialLink& link)
    : QWidget(nullptr, Qt::Window), m_link(link), m_port(link.port()) {
    setObjectName(QStringLiteral("frmSerialConfig"));
    setWindowTitle(QStringLiteral("Serial Port Setup"));
    buildLists();
    loadFromPort();
    connect(cmbPort, &QComboBox::currentIndexChanged, this, [this] { showDeviceOfSelectedPort(); });
    connect(cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
}

void frmSerialConfig::buildLists() {
    cmbPort = new QComboBox(this);
    for (int n = 1; n <= kDialogPorts; ++n) cmbPort->addItem(QStringLiteral("COM%1:").arg(n), n);
    cmbDevice = new DeviceChooser(this);
    cmbBaud = new QComboBox(this);
    cmbBaud->setEditable(true);
    fill(cmbBaud, kBaudChoices);
    cmbParity = new QComboBox(this);
    fill(cmbParity, kParityChoices);
    cmbDataBits = new QComboBox(this);
    fill(cmbDataBits, kDataBitsChoices);
    cmbStopBits = new QComboBox(this);
    fill(cmbStopBits, kStopBitsChoices);
    cmbDevice->disableForNetwork({cmbBaud, cmbParity, cmbDataBits, cmbStopBits});
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Port:"), cmbPort);
    form->addRow(QStringLiteral("Device:"), cmbDevice);
    form->addRow(QStringLiteral("Baud Rate:"), cmbBaud);
    form->addRow(QStringLiteral("Parity:"), cmbParity);
    form->addRow(QStringLiteral("Data Bits:"), cmbDataBits);
    form->addRow(QStringLiteral("Stop Bits:"), cmbStopBits);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(buttons);
}

void frmSerialConfig::loadFromPort() {
    cmbPort->setCurrentIndex(m_port.port() >= 1 && m_port.port() <= kDialogPorts ? m_port.port() - 1
                                                                                 : -1);
    cmbBaud->setCurrentText(QString::number(m_port.baud()));
    cmbParity->setCurrentIndex(choiceIndex(kParityChoices, m_port.parity()));
    cmbDataBits->setCurrentIndex(choiceIndex(kDataBitsChoices, m_port.databits()));
    cmbStopBits->setCurrentIndex(choiceIndex(kStopBitsChoices, m_port.stopbits()));
    showDeviceOfSelectedPort();
}

void frmSerialConfig::showDeviceOfSelectedPort() {
    const int port = cmbPort->currentIndex() >= 0 ? cmbPort->currentData().toInt() : m_port.port();
    cmbDevice->setPath(devicePath(m_link.tavo().store(), port));
}

void frmSerialConfig::cmdOK_Click() {
    writeBack();
    m_link.refreshSetupCaption();
    hide();
}

void frmSerialConfig::cmdCancel_Click() {
    hide();
}

// In the order port, baud, parity, data bits, stop bits. A baud text that
// isn't a positive number keeps the old rate.
void frmSerialConfig::writeBack() {
    writeList(cmbPort, m_port, &SerialPort::setPort);
    bool ok = false;
    const int baud = cmbBaud->currentText().trimmed().toInt(&ok);
    if (ok && baud > 0) m_port.setBaud(baud);
    writeList(cmbParity, m_port, &SerialPort::setParity);
    writeList(cmbDataBits, m_port, &SerialPort::setDatabits);
    writeList(cmbStopBits, m_port, &SerialPort::setStopbits);
    SettingsStore& store = m_link.tavo().store();
    const std::string device = cmbDevice->path();
    if (!device.empty() && device != devicePath(store, m_port.port()))
        setDevicePath(store, m_port.port(), device);
}

}  // namespace zelvan
