// The text input windows for real, from keys, a serial line (a pty or a TCP
// connection) and a caption file to a sign on a pty, through the real display
// window.

#include <gtest/gtest.h>
#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest/QTest>

#include <fstream>

#include "demo/captionwatch.h"
#include "display/frmoutdw.h"
#include "display/signmodel.h"
#include "platform/devicemap.h"
#include "support/pty.h"
#include "support/qtrig.h"
#include "textinput/frminascii.h"
#include "textinput/frminkey.h"
#include "textinput/frmintds.h"

namespace zelvan {
namespace {

using testing::waitFor;

// Each road ends at the real display window, its sign on a pseudo-terminal.
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
    // The caption as the audience reads it in the reflector, rows joined by " / ".
    std::string signRows() {
        model.feed(sign.take());
        return reflectorCaption(model);
    }
    // Runs capture turns, as a timed wait does, until the sign shows `rows`.
    bool captureUntilSignShows(const std::string& rows) {
        QElapsedTimer clock;
        clock.start();
        while (signRows() != rows && clock.elapsed() < 5000) tavo.pollInput();
        return signRows() == rows;
    }
};

// Letters that are key codes elsewhere (F1 is 112, a "p") type like any other.
TEST_F(TextWindowTest, KeyboardLinesGoOutAndALongOneWrapsAtAWordBreak) {
    frmInKey window(tavo, shell);
    tavo.frmInKey = &window;
    tavo.bInKey = true;
    QTimer::singleShot(0, &window, [&] {
        EXPECT_EQ(window.lblNotify->text(), QString::fromLatin1(kBetterTypeFast));
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        QTest::keyClick(window.tbInput, Qt::Key_F1);
        EXPECT_EQ(std::count(log.begin(), log.end(), "help"), 1);
        QTest::keyClicks(window.tbInput, QStringLiteral("Evening plans"));
        QTest::keyClick(window.tbInput, Qt::Key_Return);
        QTest::keyClicks(window.tbInput,
                         QStringLiteral("The quick brown fox jumps over the lazy dog"));
        window.cmdSend->click();
        EXPECT_TRUE(
            captureUntilSignShows("Evening plans / The quick brown fox jumps over / the lazy dog"))
            << model.dump();
        tavo.stopCapture();
    });
    window.showForm();  // returns when capture stops
    EXPECT_EQ(window.tbInput->text(), QString());
    EXPECT_TRUE(window.close());
}

// The ASCII line: a cable, or a caption writer's program that connects to the
// port's listener.
struct AsciiLineTest : TextWindowTest, ::testing::WithParamInterface<bool> {};

// Shown with its port closed; hiding closes an open port and saves its section.
TEST_P(AsciiLineTest, LinesGoOutOneByOne) {
    testing::PtyEnd cable;
    QTcpServer probe;  // finds a free port
    ASSERT_TRUE(probe.listen(QHostAddress::LocalHost));
    const std::uint16_t at = probe.serverPort();
    probe.close();
    setDevicePath(store, 3,
                  GetParam() ? "tcp-listen://127.0.0.1:" + std::to_string(at) : cable.slave);
    store.set("AsciiPort", "port", "3");
    store.set("AsciiPort", "baud", "2400");
    frmInAscii window(tavo, shell);
    tavo.frmInAscii = &window;
    tavo.bInAscii = true;
    window.showForm();
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.cmdPortSetup->text(), QStringLiteral("3:2400,n,8,1"));
    EXPECT_EQ(tavo.InputFilterType, 3);
    EXPECT_TRUE(window.lblOpenPortDummy->isVisibleTo(&window));
    QTcpSocket writer;
    QTimer::singleShot(0, &window, [&] {
        EXPECT_FALSE(window.lblOpenPortDummy->isVisibleTo(&window));
        const char* text = "One\rTwo\n\rThree is a line far too long for the sign\r\n\n";
        if (GetParam()) {
            writer.connectToHost(QHostAddress::LocalHost, at);
            writer.waitForConnected(3000);
            writer.write(text);
        } else {
            cable.send(text);
        }
        EXPECT_TRUE(captureUntilSignShows("Two / Three is a line far too long / for the sign"))
            << model.dump();
        EXPECT_EQ(window.cmdPortOpen->text(), QStringLiteral("Close"));
        window.cmdPortOpen->click();  // closes the port and ends capture
    });
    window.cmdPortOpen->click();
    EXPECT_FALSE(window.input().link().isPortOpen());
    QTimer::singleShot(0, &window, [&] {
        window.hideForm();
        tavo.stopCapture();
    });
    window.cmdPortOpen->click();
    EXPECT_FALSE(window.isVisible() || window.input().link().isPortOpen());
    EXPECT_EQ(store.get("AsciiPort", "baud", ""), "2400");
    EXPECT_FALSE(store.has("AsciiPort", "stopbits"));
}
INSTANTIATE_TEST_SUITE_P(CableAndNetwork, AsciiLineTest, ::testing::Bool());

// A key as the operator presses it, where the focus stands.
void press(QWidget* focus, Qt::Key key, const QString& text = {}) {
    focus->setFocus();
    ASSERT_TRUE(waitFor([&] { return QApplication::focusWidget() == focus; }));
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(focus, &down);
}

// The caption file window, shown; its file dialog answers `answer`.
struct CaptionFileWindowTest : TextWindowTest {
    frmInTDS window{tavo, shell};
    QTemporaryDir dir;
    QStringList asked;
    std::optional<QString> answer;

    void SetUp() override {
        TextWindowTest::SetUp();
        window.setFileChooser(
            [&](QWidget*, const QString& title, const QString& start, const QStringList& filters) {
                asked << title << start << filters.join(u'|');
                return answer;
            });
        tavo.frmInTDS = &window;
        tavo.bInTDS = true;
        window.showForm();
    }
};

// Stepping itself is the logic's; here each way in has to reach it, keys
// seen before the focused control.
TEST_F(CaptionFileWindowTest, DialogMenuButtonsAndKeysReachTheActions) {
    window.cmdSelectTDSFile->click();  // Cancel
    EXPECT_EQ(asked.value(2),
              QStringLiteral("TDS,Text (tds;txt) (*.tds *.txt)|SubRip (srt) (*.srt)|"
                             "WebVTT (vtt) (*.vtt)|All (*) (*)"));
    answer = dir.filePath("show.vtt");
    std::ofstream(answer->toStdString(), std::ios::binary)
        << "WEBVTT\n\n00:01.000 --> 00:02.000\nOne\n\n00:03.000 --> 00:04.000\n"
           "Caf\xC3\xA9 two\n\n00:05.000 --> 00:06.000\nThree\n";
    window.mnuFileOpen->trigger();
    EXPECT_EQ(window.tbTDSFile->text(), QStringLiteral("show.vtt"));
    auto current = [&] { return window.rtbCaptionCurrent->toPlainText(); };
    window.bSend->click();
    window.mnuSend->trigger();
    EXPECT_EQ(current(), QStringLiteral("Caf\u00E9 two"));
    EXPECT_TRUE(waitFor([&] { return signRows() == "Caf\u00E9 two"; })) << model.dump();
    window.bRewind->click();
    window.mnuCaptionRewind->trigger();
    EXPECT_EQ(window.rtbCaptionNext->toPlainText(), QStringLiteral("One"));
    window.bErase->click();
    EXPECT_TRUE(current().isEmpty());
    EXPECT_TRUE(waitFor([&] { return signRows().empty(); })) << model.dump();

    window.activateWindow();
    press(window.tbTDSFile, Qt::Key_PageDown);
    EXPECT_EQ(current(), QStringLiteral("One"));
    EXPECT_EQ(QApplication::focusWidget(), window.bSend) << "stepping gives Send the focus";
    press(window.bSend, Qt::Key_PageUp);
    EXPECT_TRUE(current().isEmpty());
    window.bSend->click();
    press(window.tbTCOffset, Qt::Key_E, QStringLiteral("E"));
    EXPECT_TRUE(current().isEmpty()) << "E erases anywhere";
    EXPECT_EQ(window.tbTCOffset->text(), QStringLiteral("+00:00:00:00E")) << "and still types";
    window.mnuSend->trigger();
    window.mnuErase->trigger();
    EXPECT_TRUE(current().isEmpty());
    press(window.tbTCOffset, Qt::Key_F1);
    EXPECT_EQ(std::count(log.begin(), log.end(), "help"), 1);

    answer.reset();
    window.cmdSelectTDSFile->click();
    EXPECT_EQ(asked.value(7), dir.filePath("show.vtt"));
    window.close();
    EXPECT_FALSE(window.isVisible());
}

// Voice tags, cue settings, NOTE and STYLE blocks; two cues overlap.
constexpr const char* kFilm =
    "WEBVTT\n\nSTYLE\n::cue { color: yellow }\n\nNOTE timed by hand\n\n"
    "00:01.000 --> 00:01.600 line:0\n<v Ann>Lights.</v>\n\n"
    "intro\n00:02.000 --> 00:02.800 align:start\n<v Bob>Camera.\n\n"
    "00:02.500 --> 00:03.300\nAction!\n\n00:03.600 --> 00:04.000\n\u266A\n";

// The frames of each change arrive on the sign within 50 ms of its cue time,
// counted from the first; Play starts at the first cue and stops at the end.
TEST_F(CaptionFileWindowTest, ASubtitleFilePlaysOntoTheSignOnTime) {
    answer = dir.filePath("film.vtt");
    std::ofstream(answer->toStdString(), std::ios::binary) << kFilm;
    EXPECT_FALSE(window.cmdPlay->isEnabled());
    window.mnuFileOpen->trigger();
    window.tbStartAt->setText(QStringLiteral("00:00:01"));
    sign.take();
    QElapsedTimer clock;
    clock.start();
    window.mnuPlayPause->trigger();
    std::vector<long long> changes;
    long long lastByte = -1000;
    waitFor(
        [&] {
            if (sign.take().empty()) return window.cmdPlay->text() == QStringLiteral("Play");
            // Cues change at least 300 ms apart; a change's bytes come together.
            if (clock.elapsed() - lastByte > 200) changes.push_back(clock.elapsed());
            lastByte = clock.elapsed();
            return false;
        },
        8000);
    const long long cueTimes[] = {0, 600, 1000, 1500, 1800, 2300, 2600, 3000};
    ASSERT_EQ(changes.size(), std::size(cueTimes));
    for (std::size_t i = 0; i < changes.size(); ++i)
        EXPECT_NEAR(changes[i] - changes[0], cueTimes[i], 120) << "change " << i;  // busy machines
    EXPECT_EQ(window.lblClock->text(), QStringLiteral("00:00:04.0"));
}

}  // namespace
}  // namespace zelvan
