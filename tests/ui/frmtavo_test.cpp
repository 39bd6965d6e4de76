// The main window for real: what the operator sees of queued bytes, and
// E X I T writing the settings file.

#include <gtest/gtest.h>
#include <QAction>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStandardPaths>

#include "core/appshell.h"
#include "core/frmtavo.h"
#include "platform/qtsettingsstore.h"
#include "support/qtrig.h"

namespace zelvan {
namespace {

struct MainWindowTest : ::testing::Test, testing::QtRig {
    frmTavo window{tavo, shell};

    template <typename T>
    T* child(const char* name) {
        return window.findChild<T*>(QString::fromLatin1(name));
    }
};

TEST_F(MainWindowTest, QueuedBytesArriveInRawInputWithControlBytesInRed) {
    window.show();
    for (unsigned char b : std::string("Hi\r\n\x14 \xe9")) tavo.queueByte(b);
    tavo.pollInput();
    EXPECT_EQ(window.readHistoryText(), QStringLiteral("HiMJT é"));
    EXPECT_EQ(window.totCharsText(), QStringLiteral("7"));

    QPlainTextEdit* pane = child<QPlainTextEdit>("rtbReadHistory");
    ASSERT_NE(pane, nullptr);
    QTextCursor cursor(pane->document());
    cursor.setPosition(3);  // just after "HiM"
    EXPECT_EQ(cursor.charFormat().foreground().color(), QColor(255, 0, 0));
    cursor.setPosition(2);  // just after "Hi"
    EXPECT_EQ(cursor.charFormat().foreground().color(), QColor(0, 0, 0));
}

// The process ends inside exitProgram, before any later refresh could draw.
TEST_F(MainWindowTest, ShutdownShowsItsStatusAtOnce) {
    window.show();
    tavo.shell = &shell;
    tavo.exitProgram();
    EXPECT_EQ(shell.ends, 1);
    EXPECT_EQ(child<QLabel>("sbStatusPanel1")->text(),
              QStringLiteral("Closing input filter. Stand by..."));
}

TEST(SettingsFile, ExitWritesAllSevenKeysUnderGeneralInTheUsersConfigFolder) {
    QtDispatch dispatch;
    QtSettingsStore store;
    testing::RecordingTone tone;
    testing::Log log;
    testing::FakeShell shell{log};
    Tavo tavo{dispatch, store, tone};
    frmTavo window{tavo, shell};
    tavo.shell = &shell;
    tavo.InputFilterType = 3;

    const QString expected =
        qEnvironmentVariable("XDG_CONFIG_HOME", QDir::homePath() + "/.config") +
        QStringLiteral("/Zelvan21/Zelvan21.ini");
    EXPECT_EQ(store.fileName(), expected);
    QFile::remove(expected);
    window.findChild<QPushButton*>(QStringLiteral("cmdExit"))->click();
    EXPECT_EQ(shell.ends, 1);

    QFile file(expected);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    EXPECT_TRUE(text.startsWith(QStringLiteral("[General]"))) << text.toStdString();
    for (const char* key : {"BeepOnMessage=false", "DoStartupBarker=true",
                            "StartupBarker=", "Obfuscate=", "ObfuscateType=0", "InputFilterType=3",
                            "ExitDisplayTask=1"})
        EXPECT_TRUE(text.contains(QString::fromLatin1(key), Qt::CaseInsensitive)) << key;
}

TEST(SettingsFile, TextWithCommasAndHighBytesComesBackWhole) {
    QtSettingsStore store;
    store.set("General", "StartupBarker", "One, two<br>\x95 three \xe9");
    store.sync();
    QtSettingsStore again;
    EXPECT_EQ(again.get("General", "StartupBarker", ""), "One, two<br>\x95 three \xe9");
    EXPECT_EQ(again.get("DWPort", "baud", "9600"), "9600");
}

// The entry switches the decoder both line-21 filters share and saves the
// setting at once; the next start reads it back.
TEST(DecoderSetting, BroadcastEdmEntrySwitchesTheSharedDecoderAndSurvivesARestart) {
    const auto entry = [](AppShell& shell) {
        for (QAction* a : shell.mainWindow()->findChildren<QAction*>())
            if (a->text() == QStringLiteral("Broadcast EDM (keep position)")) return a;
        return static_cast<QAction*>(nullptr);
    };
    testing::QtRig rig;
    AppShell shell, restarted;
    shell.showMainWindow(rig.tavo);
    const std::unique_ptr<frmTavo> window(shell.mainWindow());
    ASSERT_NE(entry(shell), nullptr);
    entry(shell)->trigger();
    EXPECT_TRUE(shell.decoder().EdmKeepsPosition);

    Tavo again{rig.dispatch, rig.store, rig.tone};
    restarted.showMainWindow(again);
    const std::unique_ptr<frmTavo> second(restarted.mainWindow());
    EXPECT_TRUE(restarted.decoder().EdmKeepsPosition);
    EXPECT_TRUE(entry(restarted)->isChecked());
}

}  // namespace
}  // namespace zelvan
