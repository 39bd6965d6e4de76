#pragma once
// The serial port component's own settings dialog: port number with the device
// behind it, baud, parity, data bits and stop bits. Modal; on OK the component
// holds the choice and the port number maps to the chosen device.

#include <QDialog>

#include "platform/serialport.h"
#include "platform/settingsstore.h"

class QComboBox;
class QSpinBox;

namespace zelvan {

class DeviceChooser;

class SerialSetupDialog : public QDialog {
  public:
    SerialSetupDialog(SerialPort& port, SettingsStore& store, QWidget* parent = nullptr);

    // Writes the dialog's choice into the component and the device map.
    void apply();

    QSpinBox* portBox() const { return m_port; }
    QComboBox* baudBox() const { return m_baud; }
    QComboBox* parityBox() const { return m_parity; }
    QComboBox* dataBitsBox() const { return m_dataBits; }
    QComboBox* stopBitsBox() const { return m_stopBits; }
    DeviceChooser* deviceBox() const { return m_device; }

  private:
    void showDeviceOf(int port);

    SerialPort& m_serial;
    SettingsStore& m_store;
    QSpinBox* m_port;
    DeviceChooser* m_device;
    QComboBox* m_baud;
    QComboBox* m_parity;
    QComboBox* m_dataBits;
    QComboBox* m_stopBits;
};

}  // namespace zelvan
