// The help browser, the control code reference and the preferences window as
// the operator works them, and a caption set in the preferences reaching the
// sign after a restart of the real program.

#include <gtest/gtest.h>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QTemporaryDir>

#include "core/appshell.h"
#include "core/frmtavo.h"
#include "display/signmodel.h"
#include "platform/qtsettingsstore.h"
#include "support/frmansitable.h"
#include "support/frmhelp.h"
#include "support/frmtavoprefs.h"
#include "support/programrig.h"
#include "support/qtrig.h"

namespace zelvan {
namespace {

using testing::waitFor;

struct HelpPages : ::testing::Test {
    QTemporaryDir dir;
    QString page(const QString& name, const QString& title) {
        QFile f(dir.filePath(name));
        f.open(QIODevice::WriteOnly);
        f.write(("<html><head><title>" + title + "</title></head><body>" + title +
                 " roll-up</body></html>")
                    .toUtf8());
        return dir.filePath(name);
    }
    void enter(frmHelp& help, const QString& address) {
        help.addressBox()->setEditText(address);
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QApplication::sendEvent(help.addressBox()->lineEdit(), &key);
    }
    QStringList entries(frmHelp& help) {
        QStringList out;
        for (int i = 0; i < help.addressBox()->count(); ++i) out << help.addressBox()->itemText(i);
        return out;
    }
};

TEST_F(HelpPages, AddressListHoldsEachPageOnceLatestFirst) {
    const QString a = page("a.htm", "Page A"), b = page("b.htm", "Page B");
    frmHelp help;
    help.StartingAddress = a;
    help.show();
    ASSERT_TRUE(waitFor([&] { return help.windowTitle() == "Page A"; }));
    enter(help, b);
    ASSERT_TRUE(waitFor([&] { return help.windowTitle() == "Page B"; }));
    enter(help, a);
    ASSERT_TRUE(waitFor([&] { return help.windowTitle() == "Page A"; }));
    EXPECT_EQ(entries(help).join(' ').toStdString(), (QStringList{a, b}).join(' ').toStdString());
    help.toolbarClick("Back");
    EXPECT_EQ(help.windowTitle(), "Page B");
    EXPECT_EQ(entries(help).join(' ').toStdString(), (QStringList{b, a}).join(' ').toStdString());
}

TEST_F(HelpPages, StopEndsWorkingAtOnceAndKeepsThePageShown) {
    const QString a = page("a.htm", "Page A"), b = page("b.htm", "Page B");
    frmHelp help;
    help.StartingAddress = a;
    help.show();
    ASSERT_TRUE(waitFor([&] { return help.windowTitle() == "Page A"; }));
    enter(help, b);
    help.timerTick();
    EXPECT_EQ(help.windowTitle(), "Working...");
    help.toolbarClick("Stop");
    EXPECT_EQ(help.windowTitle(), "Page A");
    EXPECT_FALSE(help.timer().isActive());
    testing::settle(50);
    EXPECT_EQ(help.browser()->LocationURL(), a);
}

TEST_F(HelpPages, EmptyOrMissingAddressesShowNoPage) {
    frmHelp none;
    none.show();
    EXPECT_FALSE(none.timer().isActive());
    EXPECT_TRUE(none.browser()->toPlainText().isEmpty());

    frmHelp missing;
    missing.StartingAddress = dir.filePath("gone.htm");
    missing.show();
    ASSERT_TRUE(waitFor([&] { return !missing.timer().isActive(); }));
    EXPECT_TRUE(missing.browser()->toPlainText().trimmed().isEmpty());
}

TEST_F(HelpPages, SearchListsThePagesWithTheWordAsLinks) {
    const QString a = page("a.htm", "Page A");
    frmHelp help;
    help.StartingAddress = a;
    help.show();
    ASSERT_TRUE(waitFor([&] { return help.windowTitle() == "Page A"; }));
    help.toolbarClick("Search");
    ASSERT_NE(help.searchBox(), nullptr);
    help.searchFor("ROLL-UP");
    ASSERT_TRUE(waitFor([&] { return help.windowTitle() == "Search: ROLL-UP"; }));
    EXPECT_TRUE(help.browser()->toHtml().contains(QUrl::fromLocalFile(a).toString()));
}

TEST(HelpKey, EachF1OpensAnotherHelpWindowAtTheIndex) {
    AppShell shell;
    shell.showHelp();
    frmHelp* first = shell.lastHelp();
    shell.showHelp();
    ASSERT_NE(first, nullptr);
    EXPECT_NE(shell.lastHelp(), first);
    EXPECT_TRUE(first->isVisible());
    EXPECT_TRUE(shell.lastHelp()->StartingAddress.endsWith("index.htm", Qt::CaseInsensitive));
    first->close();
    shell.lastHelp()->close();
}

struct Reference : ::testing::Test, testing::QtRig {
    QTemporaryDir dir;
    QString before = QDir::currentPath();
    frmTavo window{tavo, shell};
    void SetUp() override { QDir::setCurrent(dir.path()); }
    void TearDown() override { QDir::setCurrent(before); }
    void write(const QByteArray& rtf) {
        QFile f(dir.filePath("ansi.rtf"));
        f.open(QIODevice::WriteOnly);
        f.write(rtf);
    }
};

TEST_F(Reference, LabelReloadsIntoTheOneWindowAndDoubleClickClosesIt) {
    write("{\\rtf1 first\\par}");
    window.lblControlCodes_Click();
    frmAnsiTable* ref = window.ansiWindow();
    ASSERT_NE(ref, nullptr);
    EXPECT_EQ(ref->windowTitle(), "Ascii");
    EXPECT_EQ(ref->pane()->toPlainText().trimmed(), "first");
    write("{\\rtf1 second\\par}");
    window.lblControlCodes_Click();
    EXPECT_EQ(window.ansiWindow(), ref);
    EXPECT_EQ(ref->pane()->toPlainText().trimmed(), "second");

    QMouseEvent dbl(QEvent::MouseButtonDblClick, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton,
                    Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(ref->pane()->viewport(), &dbl);
    ASSERT_TRUE(waitFor([&] { return window.ansiWindow() == nullptr; }));
}

TEST_F(Reference, UnreadableFileLeavesTheWindowUpAndEmpty) {
    write(QByteArray("\x00\xff{\\rtf1{{{", 10));
    window.lblControlCodes_Click();
    ASSERT_NE(window.ansiWindow(), nullptr);
    QFile::remove(dir.filePath("ansi.rtf"));
    window.lblControlCodes_Click();
    EXPECT_TRUE(window.ansiWindow()->isVisible());
    window.ansiWindow()->close();
}

struct PrefsWindow : ::testing::Test, testing::QtRig {
    frmTavo window{tavo, shell};
    template <typename T>
    T* child(frmTavoPrefs* p, const char* name) {
        return p->findChild<T*>(QString::fromLatin1(name));
    }
};

TEST_F(PrefsWindow, OneWindowWhoseEscapeDropsTheEditsAndWhoseF1OpensHelp) {
    window.mnuFilePrefs_Click();
    frmTavoPrefs* prefs = window.prefsWindow();
    window.mnuFilePrefs_Click();
    EXPECT_EQ(window.prefsWindow(), prefs);
    child<QLineEdit>(prefs, "tbStartupBarker")->setText("Dropped");
    for (QShortcut* s : prefs->findChildren<QShortcut*>())
        if (s->key() == QKeySequence(Qt::Key_F1)) emit s->activated();
    EXPECT_EQ(log.back(), "help");
    QKeyEvent esc(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(prefs, &esc);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(window.prefsWindow(), nullptr);
    EXPECT_EQ(tavo.StartupBarker, kDefaultStartupBarker);
    EXPECT_EQ(store.writes(), 0);
}

TEST_F(PrefsWindow, WackyBoxShowsTheListAndOkAppliesAndCloses) {
    window.mnuFilePrefs_Click();
    frmTavoPrefs* prefs = window.prefsWindow();
    prefs->show();
    auto* list = child<QListWidget>(prefs, "lbObfuscateType");
    EXPECT_FALSE(list->isVisible());
    child<QCheckBox>(prefs, "chkObfuscate")->click();
    EXPECT_TRUE(list->isVisible());
    child<QPushButton>(prefs, "cmdOK")->click();
    EXPECT_TRUE(tavo.Obfuscate);
    EXPECT_EQ(store.get("General", "Obfuscate", ""), "True");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(window.prefsWindow(), nullptr);
}

// The caption typed in the preferences is saved; the program started again
// on those settings shows it on the sign.
TEST(PrefsToSign, CaptionSetInPreferencesShowsAfterARestart) {
    QTemporaryDir config;
    const QByteArray saved = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
    {
        QtDispatch dispatch;
        QtSettingsStore store;
        testing::RecordingTone tone;
        testing::Log log;
        testing::FakeShell shell{log};
        Tavo tavo{dispatch, store, tone};
        tavo.loadSettings();
        frmTavoPrefs prefs(tavo, shell);
        prefs.findChild<QLineEdit*>("tbStartupBarker")->setText("Now showing<br>Hall two");
        prefs.findChild<QPushButton*>("cmdOK")->click();
        store.sync();
    }
    qputenv("XDG_CONFIG_HOME", saved);
    QFile ini(config.filePath("Zelvan21/Zelvan21.ini"));
    ASSERT_TRUE(ini.open(QIODevice::ReadOnly));
    testing::ProgramRig rig(ZELVAN_BINARY, ini.readAll().toStdString());
    SignModel sign;
    const bool shown = rig.waitUntil(
        [&] {
            sign = SignModel();
            sign.feed(rig.signBytes);
            return sign.rowThroughReflector(2).find("Hall two") != std::string::npos;
        },
        15000);
    EXPECT_TRUE(shown) << sign.dump();
    EXPECT_NE(sign.rowThroughReflector(1).find("Now showing"), std::string::npos);
}

}  // namespace
}  // namespace zelvan
