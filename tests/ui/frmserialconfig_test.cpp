// The "Serial Port Setup" dialog and the link that applies its choice, over a
// fake port.

#include <gtest/gtest.h>
#include <QPushButton>

#include "platform/seriallink.h"
#include "platform/devicechooser.h"
#include "platform/devicemap.h"
#include "support/fakes.h"
#include "support/fakeserialport.h"
#include "support/frmserialconfig.h"
#include "support/recordinglinkview.h"

namespace zelvan {
namespace {

// The dialog gives back what it started from unless the operator changes it;
// the link writes every setting, maps the device typed in (a default device
// stays unwritten) and renews the caption. Cancel gives nothing back.
TEST(SerialConfig, OkGivesEveryListAndTheDeviceAndTheLinkAppliesThem) {
    testing::Rig rig;
    FakeSerialPort port{rig.dispatch};
    testing::RecordingLinkView view;
    SerialLink link{kL21Link, port, rig.tavo.linkContext(), view};
    link.loadSettings();  // 1:1200,o,7,1
    const PortSettings before = port.settings();
    link.setup();  // the window's dialog cancelled
    {
        frmSerialConfig form(link.currentSetup(), rig.store);
        form.cmbBaud->setCurrentText("300");
        form.cmdCancel->click();
        EXPECT_EQ(form.result(), QDialog::Rejected);
    }
    view.setupAnswer = frmSerialConfig(link.currentSetup(), rig.store).choice();
    link.setup();
    EXPECT_EQ(port.settings(), before);
    EXPECT_FALSE(rig.store.has(kDevicesSection, "COM1"));

    setDevicePath(rig.store, 2, "/dev/ttyUSB0");
    frmSerialConfig form(link.currentSetup(), rig.store);
    form.show();
    form.cmbPort->setCurrentIndex(3);
    EXPECT_EQ(form.cmbDevice->path(), "/dev/ttyS3");
    form.cmbPort->setCurrentIndex(1);
    EXPECT_EQ(form.cmbDevice->path(), "/dev/ttyUSB0");
    form.cmbDevice->setPath("tcp://127.0.0.1:4001");  // the line settings stay, unchangeable
    EXPECT_FALSE(form.cmbParity->isEnabled() || form.cmbBaud->isEnabled());
    form.cmbDevice->setPath("  /dev/serial/by-id/usb-caption-box  ");
    EXPECT_TRUE(form.cmbParity->isEnabled());
    form.cmbBaud->setCurrentText("19200");
    form.cmbParity->setCurrentIndex(3);  // Mark
    form.cmbDataBits->setCurrentIndex(3);
    form.cmbStopBits->setCurrentIndex(2);
    form.cmdOK->click();
    EXPECT_FALSE(form.isVisible());
    link.applySetup(form.choice());
    EXPECT_EQ(port.settings(), (PortSettings{2, 19200, parity::kMark, 8, stopbits::kTwo}));
    EXPECT_EQ(devicePath(rig.store, 2), "/dev/serial/by-id/usb-caption-box");
    EXPECT_EQ(view.setupCaption, "2:19200,e,8,2");
    EXPECT_EQ(port.openState(), 0);  // nothing opened or closed here
}

}  // namespace
}  // namespace zelvan
