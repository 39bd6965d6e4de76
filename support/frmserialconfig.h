#pragma once
// "Serial Port Setup": the settings of the line-21 decoder's serial link, read
// from and written straight to its component. OK writes the lists back and
// renews the setup button's caption; Cancel writes nothing. Either hides the
// window, which stays loaded until its owner replaces it.
//
// The decoder window owns it (one at a time, replaced at each click of its
// setup button), so it never outlives the link it writes to.

#include <QWidget>

#include "display/seriallink.h"

class QComboBox;
class QPushButton;

namespace zelvan {

class DeviceChooser;

class frmSerialConfig : public QWidget {
  public:
    explicit frmSerialConfig(SerialLink& link);

    void cmdOK_Click();
    void cmdCancel_Click();

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
    void loadFromPort();
    void showDeviceOfSelectedPort();
    void writeBack();

    SerialLink& m_link;
    SerialPort& m_port;
};

}  // namespace zelvan
