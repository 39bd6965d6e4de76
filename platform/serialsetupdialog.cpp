#include "platform/serialsetupdialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QIntValidator>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/devicechooser.h"
#include "platform/devicemap.h"
#include "platform/portchoices.h"

namespace zelvan {

namespace {

template <std::size_t N>
QComboBox* makeList(QWidget* parent, const std::array<PortChoice, N>& choices,
                    std::int32_t current) {
    auto* box = new QComboBox(parent);
    for (const PortChoice& c : choices) box->addItem(QString::fromLatin1(c.text), c.value);
    box->setCurrentIndex(choiceIndex(choices, current));
    return box;
}

// A list left without a selection (the component held a value it has no entry
// for) keeps the component's value.
void applyList(QComboBox* box, SerialPort& port, void (SerialPort::*set)(std::int32_t)) {
    if (box->currentIndex() >= 0) (port.*set)(box->currentData().toInt());
}

}  // namespace

SerialSetupDialog::SerialSetupDialog(SerialPort& port, SettingsStore& store, QWidget* parent)
    : QDialog(parent), m_serial(port), m_store(store) {
    setWindowTitle(QStringLiteral("Port Settings"));
    m_port = new QSpinBox(this);
    m_port->setRange(1, 99);
    m_port->setValue(std::max(1, port.port()));
    m_device = new DeviceChooser(this);
    showDeviceOf(m_port->value());
    connect(m_port, &QSpinBox::valueChanged, this, [this](int n) { showDeviceOf(n); });

    // Baud is editable: a sign may want a rate the list doesn't name.
    m_baud = makeList(this, kBaudChoices, port.baud());
    m_baud->setEditable(true);
    m_baud->setValidator(new QIntValidator(1, 4000000, m_baud));
    m_baud->setCurrentText(QString::number(port.baud()));
    m_parity = makeList(this, kParityChoices, port.parity());
    m_dataBits = makeList(this, kDataBitsChoices, port.databits());
    m_stopBits = makeList(this, kStopBitsChoices, port.stopbits());

    m_device->disableForNetwork({m_baud, m_parity, m_dataBits, m_stopBits});

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Port:"), m_port);
    form->addRow(QStringLiteral("Device:"), m_device);
    form->addRow(QStringLiteral("Baud Rate:"), m_baud);
    form->addRow(QStringLiteral("Parity:"), m_parity);
    form->addRow(QStringLiteral("Data Bits:"), m_dataBits);
    form->addRow(QStringLiteral("Stop Bits:"), m_stopBits);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] {
        apply();
        accept();
    });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

void SerialSetupDialog::showDeviceOf(int port) {
    m_device->setPath(devicePath(m_store, port));
}

void SerialSetupDialog::apply() {
    const int port = m_port->value();
    const std::string device = m_device->path();
    if (!device.empty() && device != devicePath(m_store, port))
        setDevicePath(m_store, port, device);
    m_serial.setPort(port);
    bool ok = false;
    const int baud = m_baud->currentText().toInt(&ok);
    if (ok && baud > 0) m_serial.setBaud(baud);
    applyList(m_parity, m_serial, &SerialPort::setParity);
    applyList(m_dataBits, m_serial, &SerialPort::setDatabits);
    applyList(m_stopBits, m_serial, &SerialPort::setStopbits);
}

}  // namespace zelvan
