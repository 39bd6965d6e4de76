// The caption file window as built: the operator's file dialog, the menu and
// buttons reaching the same actions as the keys, keys seen before the focused
// control, and a script stepped onto a sign on a pseudo-terminal through the
// real display window.

#include <gtest/gtest.h>
#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include <filesystem>
#include <fstream>

#include "display/frmoutdw.h"
#include "display/signmodel.h"
#include "platform/devicemap.h"
#include "support/pty.h"
#include "support/qtrig.h"
#include "textinput/frmintds.h"

namespace zelvan {
namespace {

using testing::waitFor;

struct FrmInTDSTest : ::testing::Test, testing::QtRig {
    std::unique_ptr<frmInTDS> window;
    std::filesystem::path dir =
        std::filesystem::temp_directory_path() / ("frmintds-" + std::to_string(::getpid()));
    QStringList asked;
    std::optional<QString> answer;

    void SetUp() override {
        std::filesystem::create_directories(dir);
        window = std::make_unique<frmInTDS>(tavo, shell);
        window->setFileChooser([this](QWidget*, const QString& title, const QString& start,
                                      const QStringList& filters) {
            asked << title << start << filters.join(u'|');
            return answer;
        });
        tavo.frmInTDS = window.get();
        tavo.bInTDS = true;
        window->showForm();
    }
    void TearDown() override { std::filesystem::remove_all(dir); }

    void openScript(const std::string& name, const std::string& text) {
        const std::string path = (dir / name).string();
        std::ofstream(path, std::ios::binary) << text;
        answer = QString::fromStdString(path);
        window->mnuFileOpen->trigger();
    }
    // A key as the operator presses it, where the focus stands.
    void press(QWidget* focus, Qt::Key key, const QString& text = {}) {
        focus->setFocus();
        ASSERT_TRUE(waitFor([&] { return QApplication::focusWidget() == focus; }));
        QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(focus, &down);
    }
};

// Stepping itself is the logic's; here each way in has to reach it.
TEST_F(FrmInTDSTest, DialogMenuButtonsAndKeysReachTheActions) {
    window->cmdSelectTDSFile->click();  // Cancel
    EXPECT_EQ(asked.value(2),
              QStringLiteral("TDS,Text (tds;txt) (*.tds *.txt)|SubRip (srt) (*.srt)|"
                             "WebVTT (vtt) (*.vtt)|All (*) (*)"));
    openScript("show.vtt",
               "WEBVTT\n\n00:01.000 --> 00:02.000\nOne\n\n00:03.000 --> 00:04.000\n"
               "Caf\xC3\xA9 two\n\n00:05.000 --> 00:06.000\nThree\n");
    EXPECT_EQ(window->tbTDSFile->text(), QStringLiteral("show.vtt"));
    auto current = [&] { return window->rtbCaptionCurrent->toPlainText(); };
    window->bSend->click();
    window->mnuSend->trigger();
    EXPECT_EQ(current(), QStringLiteral("Caf\u00E9 two"));
    window->bRewind->click();
    window->mnuCaptionRewind->trigger();
    EXPECT_EQ(window->rtbCaptionNext->toPlainText(), QStringLiteral("One"));
    window->bErase->click();
    EXPECT_TRUE(current().isEmpty());

    window->activateWindow();
    press(window->tbTDSFile, Qt::Key_PageDown);
    EXPECT_EQ(current(), QStringLiteral("One"));
    EXPECT_EQ(QApplication::focusWidget(), window->bSend) << "stepping gives Send the focus";
    press(window->bSend, Qt::Key_PageUp);
    EXPECT_TRUE(current().isEmpty());
    window->bSend->click();
    press(window->tbTCOffset, Qt::Key_E, QStringLiteral("E"));
    EXPECT_TRUE(current().isEmpty()) << "E erases anywhere";
    EXPECT_EQ(window->tbTCOffset->text(), QStringLiteral("+00:00:00:00E")) << "and still types";
    window->mnuSend->trigger();
    window->mnuErase->trigger();
    EXPECT_TRUE(current().isEmpty());
    press(window->tbTCOffset, Qt::Key_F1);
    EXPECT_EQ(std::count(log.begin(), log.end(), "help"), 1);

    answer.reset();
    window->cmdSelectTDSFile->click();
    EXPECT_EQ(asked.value(7), QString::fromStdString((dir / "show.vtt").string()));
    window->close();
    EXPECT_TRUE(window->isVisible()) << "only hideForm takes it away";
}

// Captions stepped with Send reach a sign on a pseudo-terminal through the
// display window with its real serial port.
TEST_F(FrmInTDSTest, CaptionsSteppedOntoTheSign) {
    testing::PtyEnd signLine;
    ASSERT_FALSE(signLine.slave.empty());
    setDevicePath(store, 2, signLine.slave);
    tavo.view = &shell.view;
    tavo.DoStartupBarker = false;
    frmOutDW display(tavo, shell);
    tavo.frmOutDW = &display;
    display.showForm();
    tavo.bOutDW = true;
    ASSERT_TRUE(display.console().isPortOpen());
    openScript("two.tds", "; two captions\r\nCaption 1\r\nline two\r\n\r\nCaption 2\r\n");

    SignModel sign;
    auto signShows = [&](const std::string& top, const std::string& second) {
        return waitFor([&] {
            sign.feed(signLine.take());
            const std::string pad(32, ' ');
            return sign.rowThroughReflector(1) == (top + pad).substr(0, 32) &&
                   sign.rowThroughReflector(2) == (second + pad).substr(0, 32) &&
                   sign.rowThroughReflector(3) == pad;
        });
    };
    window->bSend->click();
    EXPECT_TRUE(signShows("Caption 1", "line two")) << sign.dump();
    window->bSend->click();
    EXPECT_TRUE(signShows("Caption 2", "")) << sign.dump();
    window->bSend->click();
    EXPECT_TRUE(signShows("", "")) << "past the end the sign goes blank\n" << sign.dump();
    EXPECT_EQ(sign.strayBytes + sign.unknownFrames, 0) << sign.dump();
    display.hideForm();
}

}  // namespace
}  // namespace zelvan
