// The main window for real: what the operator sees of queued bytes, E X I T
// writing the settings file, and the decoder entry surviving a restart.

#include <gtest/gtest.h>
#include <QAction>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include "core/appshell.h"
#include "core/frmtavo.h"
#include "platform/qtsettingsstore.h"
#include "support/qtrig.h"

namespace zelvan {
namespace {

struct MainWindowTest : ::testing::Test, testing::QtRig {
    frmTavo window{tavo, shell};
};

// The status of the shutdown shows at once: the process ends inside
// exitProgram, before any later refresh could draw.
TEST_F(MainWindowTest, QueuedBytesShowWithControlBytesInRedAndShutdownShowsItsStatus) {
    window.show();
    for (unsigned char b : std::string("Hi\r\n\x14 \xe9")) tavo.queueByte(b);
    tavo.pollInput();
    EXPECT_EQ(window.readHistoryText(), QStringLiteral("HiMJT é"));
    EXPECT_EQ(window.totCharsText(), QStringLiteral("7"));
    QTextCursor cursor(window.findChild<QPlainTextEdit*>("rtbReadHistory")->document());
    cursor.setPosition(3);  // just after "HiM"
    EXPECT_EQ(cursor.charFormat().foreground().color(), QColor(255, 0, 0));
    cursor.setPosition(2);
    EXPECT_EQ(cursor.charFormat().foreground().color(), QColor(0, 0, 0));

    tavo.shell = &shell;
    tavo.exitProgram();
    EXPECT_EQ(window.findChild<QLabel*>("sbStatusPanel1")->text(),
              QStringLiteral("Closing input filter. Stand by..."));
}

TEST(SettingsFile, ExitWritesTheGeneralSectionInTheUsersConfigFolder) {
    QtDispatch dispatch;
    QtSettingsStore store;
    testing::RecordingTone tone;
    testing::Log log;
    testing::FakeShell shell{log};
    Tavo tavo{dispatch, store, tone};
    frmTavo window{tavo, shell};
    tavo.shell = &shell;
    tavo.InputFilterType = 3;
    tavo.StartupBarker = "One, two<br>\x95 three \xe9";

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
    for (const char* key : {"BeepOnMessage=false", "DoStartupBarker=true", "Obfuscate=",
                            "ObfuscateType=0", "InputFilterType=3", "ExitDisplayTask=1"})
        EXPECT_TRUE(text.contains(QString::fromLatin1(key), Qt::CaseInsensitive)) << key;
    EXPECT_EQ(QtSettingsStore().get("General", "StartupBarker", ""), tavo.StartupBarker);
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
