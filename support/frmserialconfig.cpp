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

// A list with no entry for the starting value shows no selection and keeps
// that value: nothing sound can be chosen for the operator, and this program
// never produces such values itself.
std::int32_t listValue(const QComboBox* box, std::int32_t kept) {
    return box->currentIndex() >= 0 ? box->currentData().toInt() : kept;
}

}  // namespace

frmSerialConfig::frmSerialConfig(const PortSetup& current, const SettingsStore& store,
                                 QWidget* parent)
    : QDialog(parent), m_current(current), m_store(store) {
    setObjectName(QStringLiteral("frmSerialConfig"));
    setWindowTitle(QStringLiteral("Serial Port Setup"));
    buildLists();
    load();
    connect(cmbPort, &QComboBox::currentIndexChanged, this, [this] { showDeviceOfSelectedPort(); });
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void frmSerialConfig::buildLists() {
    cmbPort = new QComboBox(this);
    for (int n = 1; n <= kDialogPorts; ++n) cmbPort->addItem(QStringLiteral("COM%1:").arg(n), n);
    cmbDevice = new DeviceChooser(this);
    // Editable: a sign may want a rate the list doesn't name.
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

void frmSerialConfig::load() {
    const PortSettings& s = m_current.settings;
    cmbPort->setCurrentIndex(s.port >= 1 && s.port <= kDialogPorts ? s.port - 1 : -1);
    cmbBaud->setCurrentText(QString::number(s.baud));
    cmbParity->setCurrentIndex(choiceIndex(kParityChoices, s.parity));
    cmbDataBits->setCurrentIndex(choiceIndex(kDataBitsChoices, s.databits));
    cmbStopBits->setCurrentIndex(choiceIndex(kStopBitsChoices, s.stopbits));
    cmbDevice->setPath(m_current.device);
}

void frmSerialConfig::showDeviceOfSelectedPort() {
    cmbDevice->setPath(devicePath(m_store, listValue(cmbPort, m_current.settings.port)));
}

PortSetup frmSerialConfig::choice() const {
    PortSetup chosen = m_current;
    PortSettings& s = chosen.settings;
    s.port = listValue(cmbPort, s.port);
    bool ok = false;
    const int baud = cmbBaud->currentText().trimmed().toInt(&ok);
    if (ok && baud > 0) s.baud = baud;
    s.parity = listValue(cmbParity, s.parity);
    s.databits = listValue(cmbDataBits, s.databits);
    s.stopbits = listValue(cmbStopBits, s.stopbits);
    chosen.device = cmbDevice->path();
    return chosen;
}

std::optional<PortSetup> askPortSetup(const PortSetup& current, const SettingsStore& store,
                                      QWidget* parent) {
    frmSerialConfig dialog(current, store, parent);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return dialog.choice();
}

}  // namespace zelvan
