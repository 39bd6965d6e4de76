#include "platform/devicechooser.h"

#include <QSerialPortInfo>
#include <algorithm>

#include "platform/devicemap.h"
#include "platform/qtext.h"

namespace zelvan {

DeviceChooser::DeviceChooser(QWidget* parent) : QComboBox(parent) {
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setMinimumContentsLength(24);
    auto ports = QSerialPortInfo::availablePorts();
    std::sort(ports.begin(), ports.end(), [](const QSerialPortInfo& a, const QSerialPortInfo& b) {
        return a.systemLocation() < b.systemLocation();
    });
    for (const QSerialPortInfo& info : ports) {
        addItem(info.systemLocation());
        // What the system says about the device, so a USB adapter is easy to tell.
        QString about = info.description();
        if (!info.manufacturer().isEmpty())
            about += QStringLiteral(" (%1)").arg(info.manufacturer());
        setItemData(count() - 1, about, Qt::ToolTipRole);
    }
}

void DeviceChooser::setPath(const std::string& path) {
    setCurrentText(toQString(path));
}

std::string DeviceChooser::path() const {
    return fromQString(currentText().trimmed());
}

void DeviceChooser::disableForNetwork(const QList<QWidget*>& serialFields) {
    const auto follow = [this, serialFields] {
        const bool line = !isNetworkDevice(path()) && path() != kNullDeviceEntry;
        for (QWidget* field : serialFields) field->setEnabled(line);
    };
    connect(this, &QComboBox::currentTextChanged, this, follow);
    follow();
}

}  // namespace zelvan
