// The real serial port component against pseudo-terminals: the test holds the
// master side, the component opens the slave through the device map.

#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <csignal>
#include <ctime>

#include <gtest/gtest.h>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include "platform/seriallink.h"
#include "platform/devicemap.h"
#include "platform/qtserialport.h"
#include "support/pty.h"
#include "support/qtrig.h"
#include "support/recordinglinkview.h"

namespace zelvan {
namespace {

using testing::waitFor;

struct QtPortTest : ::testing::Test, testing::QtRig {
    testing::PtyEnd pty;
    QtSerialPort port{dispatch, store};
    testing::RecordingLinkView view;
    std::vector<std::int32_t> states;

    void SetUp() override {
        ASSERT_FALSE(pty.slave.empty());
        setDevicePath(store, 1, pty.slave);
        port.setPort(1);
        port.onState = [this](std::int32_t s) { states.push_back(s); };
    }
};

// Control bytes a cooked line would eat or translate: NUL, XON/XOFF, CR, LF,
// DEL and 8-bit bytes must pass both ways as they are.
TEST_F(QtPortTest, LineIsRawBothWays) {
    port.open();
    ASSERT_EQ(port.openState(), 1) << port.lastError();
    std::string got;
    port.onReceive = [&] {
        while (port.rxCount() >= 1) got += static_cast<char>(port.readByte());
    };
    const std::string bytes("\x14\x25\x00\x11\x13\r\n\x7F\xFB\xFF", 10);
    ASSERT_TRUE(pty.send(bytes));
    ASSERT_TRUE(waitFor([&] { return got.size() >= bytes.size(); }));
    EXPECT_EQ(got, bytes);
    EXPECT_EQ(states, std::vector<std::int32_t>{1});

    port.write(bytes);
    std::string out;
    ASSERT_TRUE(waitFor([&] { return (out += pty.take()).size() >= bytes.size(); }));
    EXPECT_EQ(out, bytes);
}

// A missing device says which and why; a setting the device refuses is named
// and the port stays open and reads.
TEST_F(QtPortTest, OpenProblemsAreNamed) {
    setDevicePath(store, 1, "/dev/zelvan-no-such-tty");
    port.open();
    EXPECT_EQ(port.openState(), 0);
    EXPECT_NE(port.lastError().find("/dev/zelvan-no-such-tty"), std::string::npos);
    EXPECT_NE(port.lastError().find("port settings"), std::string::npos) << port.lastError();

    setDevicePath(store, 1, pty.slave);
    port.setDatabits(7);  // a pseudo-terminal has no character size
    port.open();
    EXPECT_EQ(port.openState(), 1);
    EXPECT_EQ(port.lastError(), pty.slave + ": the device can't take 7 data bits.");
    ASSERT_TRUE(pty.send("ok"));
    EXPECT_TRUE(waitFor([&] { return port.rxCount() == 2; }));
}

// An operator outside the device's group learns which group it is. The open
// runs in a child as an unprivileged user, since root may open anything.
TEST_F(QtPortTest, RefusedDeviceNamesTheGroupThatMayUseIt) {
    if (::geteuid() != 0) GTEST_SKIP() << "needs root, to run the open as another user";
    struct stat st {};
    ASSERT_EQ(::stat(pty.slave.c_str(), &st), 0);
    const group* g = ::getgrgid(st.st_gid);
    ASSERT_NE(g, nullptr);
    const std::string expected = "Only members of the group \"" + std::string(g->gr_name) + "\"";
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (::setgroups(0, nullptr) != 0 || ::setgid(65534) != 0 || ::setuid(65534) != 0)
            ::_exit(2);
        port.open();
        ::_exit(port.openState() == 0 && port.lastError().find(expected) != std::string::npos ? 0
                                                                                              : 1);
    }
    int status = -1;
    for (int i = 0; i < 2000 && ::waitpid(child, &status, WNOHANG) == 0; ++i) QThread::msleep(10);
    if (status == -1) ::kill(child, SIGKILL), ::waitpid(child, nullptr, 0);
    ASSERT_TRUE(WIFEXITED(status)) << "the child hung";
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

// --- through a link, as the windows use it ---

// More than the pty holds at once; the sign reads while the close waits.
TEST_F(QtPortTest, DisplayCloseWaitsUntilTheFramesAreOut) {
    SerialLink link(kDisplayLink, port, tavo.linkContext(), view);
    link.openPort();
    const std::string frames(20000, 'F');
    link.write(frames);
    std::string got;
    QTimer reader;
    QObject::connect(&reader, &QTimer::timeout, [&] { got += pty.take(); });
    reader.start(5);
    link.closePort();
    EXPECT_EQ((got + pty.take()).size(), frames.size());
    EXPECT_FALSE(link.isPortOpen());
}

TEST_F(QtPortTest, VanishedDeviceIsToldOnceWithoutSpinningAndReopensWhenBack) {
    // A stable name in front of the device, as udev gives a USB adapter.
    QTemporaryDir dir;
    const std::string alias = dir.filePath("ttyCaption").toStdString();
    ASSERT_TRUE(QFile::link(QString::fromStdString(pty.slave), QString::fromStdString(alias)));
    setDevicePath(store, 1, alias);

    SerialLink link(kAsciiLink, port, tavo.linkContext(), view);
    link.openPort();
    ASSERT_TRUE(waitFor([&] { return view.openCaption == "Close"; })) << port.lastError();

    pty.hangUp();
    QFile::remove(QString::fromStdString(alias));
    ASSERT_TRUE(waitFor([&] { return !view.alerts.empty(); }));
    EXPECT_FALSE(link.isPortOpen());
    EXPECT_TRUE(waitFor([&] { return view.openCaption == "Open"; }) && tavo.bStopCapture);

    // Left alone now, the program must idle, not chase the dead device.
    const std::clock_t before = std::clock();  // processor time, all threads
    testing::settle(300);
    EXPECT_LT((std::clock() - before) * 1000 / CLOCKS_PER_SEC, 150);
    EXPECT_EQ(view.alerts.size(), 1u);

    link.openPort();  // still gone: the plain message, with the reason
    ASSERT_EQ(view.boxes.size(), 1u);
    EXPECT_EQ(view.boxes[0].rfind("Couldn't open port.|" + alias, 0), 0u) << view.boxes[0];

    testing::PtyEnd back;
    ASSERT_TRUE(QFile::link(QString::fromStdString(back.slave), QString::fromStdString(alias)));
    link.openPort();
    ASSERT_TRUE(link.isPortOpen()) << port.lastError();
    EXPECT_TRUE(waitFor([&] { return view.openCaption == "Close"; }));
    ASSERT_TRUE(back.send("ok"));
    EXPECT_TRUE(waitFor([&] { return tavo.totalChars == 2; }));
}

}  // namespace
}  // namespace zelvan
