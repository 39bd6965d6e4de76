#pragma once
// "Serial Port Setup": the one setup dialog of the three serial links. It
// starts from a link's current settings and device and gives back the
// operator's choice as a value; the link applies it. The decoder window shows
// it modeless (one at a time, replaced at each click of its setup button) and
// applies the choice on OK; the ASCII and display windows run it modal
// through askPortSetup. Cancel gives nothing back.

#include <QDialog>
#include <optional>

#include "platform/serialport.h"
#include "platform/settingsstore.h"

class QComboBox;
class QPushButton;

namespace zelvan {

class DeviceChooser;

class frmSerialConfig : public QDialog {
  public:
    // The store gives the device behind each port number the list offers.
    frmSerialConfig(const PortSetup& current, const SettingsStore& store,
                    QWidget* parent = nullptr);

    // The lists as they stand; a list without a selection, or a baud text
    // that isn't a positive number, keeps the value the dialog started from.
    PortSetup choice() const;

    QComboBox* cmbPort;
    QComboBox* cmbBaud;
    QComboBox* cmbParity;
    QComboBox* cmbDataBits;
    QComboBox* cmbStopBits;
    // The device behind the chosen port number.
    DeviceChooser* cmbDevice;
    QPushButton* cmdOK;
    QPushButton* cmdCancel;

  private:
    void buildLists();
    void load();
    void showDeviceOfSelectedPort();

    PortSetup m_current;
    const SettingsStore& m_store;
};

// Runs the dialog modal over `parent`.
std::optional<PortSetup> askPortSetup(const PortSetup& current, const SettingsStore& store,
                                      QWidget* parent);

}  // namespace zelvan
