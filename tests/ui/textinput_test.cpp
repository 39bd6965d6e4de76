// The keyboard and ASCII serial windows for real, each with the real display
// window on a pseudo-terminal that plays the sign: typed lines and text from
// a serial line go all the way to the sign. Keys reach the input line the way
// the window system delivers them, shortcuts included.

#include <gtest/gtest.h>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QtTest/QTest>

#include "display/frmoutdw.h"
#include "display/signmodel.h"
#include "platform/devicemap.h"
#include "support/pty.h"
#include "support/qtrig.h"
#include "textinput/frminascii.h"
#include "textinput/frminkey.h"

namespace zelvan {
namespace {

std::string trimmed(const std::string& s) {
    const auto first = s.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return s.substr(first, s.find_last_not_of(' ') - first + 1);
}

struct TextWindowTest : ::testing::Test, testing::QtRig {
    testing::PtyEnd sign;
    std::unique_ptr<frmOutDW> display;
    SignModel model;

    void SetUp() override {
        ASSERT_FALSE(sign.slave.empty());
        setDevicePath(store, 2, sign.slave);
        tavo.view = &shell.view;
        tavo.DoStartupBarker = false;
        display = std::make_unique<frmOutDW>(tavo, shell);
        tavo.frmOutDW = display.get();
        tavo.bOutDW = true;
        display->showForm();
    }
    // The sign's three rows as a reader sees them, "|" between.
    std::string signRows() {
        model.feed(sign.take());
        std::string rows;
        for (int r = 1; r <= 3; ++r) rows += trimmed(model.rowThroughReflector(r)) + "|";
        return rows;
    }
    // Runs capture turns, as a timed wait does, until the sign shows `rows`.
    bool captureUntilSignShows(const std::string& rows) {
        QElapsedTimer clock;
        clock.start();
        while (signRows() != rows && clock.elapsed() < 5000) tavo.pollInput();
        return signRows() == rows;
    }
};

struct FrmInKeyTest : TextWindowTest {
    std::unique_ptr<frmInKey> window;
    void SetUp() override {
        TextWindowTest::SetUp();
        window = std::make_unique<frmInKey>(tavo, shell);
        tavo.frmInKey = window.get();
        tavo.bInKey = true;
    }
};

// Three lines typed fast, the second long enough to wrap at its last word
// break, stand on the sign's three rows. Letters that are key codes elsewhere
// (F1 is 112, a "p") type like any other; F1 itself opens the help.
TEST_F(FrmInKeyTest, TypedLinesReachTheSignAndALongOneWrapsAtAWordBreak) {
    bool shown = false;
    QTimer::singleShot(0, window.get(), [&] {
        EXPECT_EQ(window->lblNotify->text(), QString::fromLatin1(kBetterTypeFast));
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        QTest::keyClick(window->tbInput, Qt::Key_F1);
        EXPECT_EQ(std::count(log.begin(), log.end(), "help"), 1);
        QTest::keyClicks(window->tbInput, QStringLiteral("Evening plans"));
        QTest::keyClick(window->tbInput, Qt::Key_Return);
        QTest::keyClicks(window->tbInput,
                         QStringLiteral("The quick brown fox jumps over the lazy dog"));
        window->cmdSend->click();
        shown = captureUntilSignShows("Evening plans|The quick brown fox jumps over|the lazy dog|");
        tavo.stopCapture();
    });
    window->showForm();  // returns when capture stops
    EXPECT_TRUE(shown) << signRows() << "\n" << model.dump();
    EXPECT_EQ(window->tbInput->text(), QString());
    EXPECT_FALSE(window->close());  // refused: only hideForm takes it away
}

struct FrmInAsciiTest : TextWindowTest {
    testing::PtyEnd line;
    std::unique_ptr<frmInAscii> window;
    void SetUp() override {
        TextWindowTest::SetUp();
        setDevicePath(store, 3, line.slave);
        store.set("AsciiPort", "port", "3");
        window = std::make_unique<frmInAscii>(tavo, shell);
        tavo.frmInAscii = window.get();
        tavo.bInAscii = true;
        window->showForm();
    }
};

// Each run of CR and LF ends one line, and a line too long for the row wraps
// at its last word break: four lines out, the last three on the sign.
TEST_F(FrmInAsciiTest, TextFromTheSerialLineReachesTheSignLineByLine) {
    EXPECT_EQ(window->cmdPortSetup->text(), QStringLiteral("3:9600,n,8,1"));
    EXPECT_TRUE(window->lblOpenPortDummy->isVisibleTo(window.get()));
    bool shown = false;
    int rollups = 0;
    QTimer::singleShot(0, window.get(), [&] {
        EXPECT_FALSE(window->lblOpenPortDummy->isVisibleTo(window.get()));
        signRows();
        rollups = model.rollups;
        line.send("One\rTwo\n\rThree is a line far too long for the sign\r\n\n");
        shown = captureUntilSignShows("Two|Three is a line far too long|for the sign|");
        rollups = model.rollups - rollups;
        EXPECT_EQ(window->cmdPortOpen->text(), QStringLiteral("Close"));
        window->cmdPortOpen->click();  // closes the port and ends capture
    });
    window->cmdPortOpen->click();
    EXPECT_TRUE(shown) << signRows() << "\n" << model.dump();
    EXPECT_EQ(rollups, 4);
    EXPECT_FALSE(window->input().link().isPortOpen());
    window->flushPane();
    EXPECT_EQ(window->rtbDM->toPlainText().trimmed(), QString());
}

}  // namespace
}  // namespace zelvan
