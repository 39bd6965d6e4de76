// The help browser, the control code reference and the preferences window as
// the operator works them.

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
#include "support/frmansitable.h"
#include "support/frmhelp.h"
#include "support/frmtavoprefs.h"
#include "support/qtrig.h"

namespace zelvan {
namespace {

using testing::waitFor;

struct HelpPages : ::testing::Test {
    QTemporaryDir dir;
    QString page(const QString& name, const QString& title) {
        QFile f(dir.filePath(name));
        f.open(QIODevice::WriteOnly);
        f.write(("<html><head><title>" + title + "</title></head><body>roll-up</body></html>")
                    .toUtf8());
        return dir.filePath(name);
    }
    void enter(frmHelp& help, const QString& address) {
        help.addressBox()->setEditText(address);
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QApplication::sendEvent(help.addressBox()->lineEdit(), &key);
    }
    QString entries(frmHelp& help) {
        QStringList out;
        for (int i = 0; i < help.addressBox()->count(); ++i) out << help.addressBox()->itemText(i);
        return out.join(' ');
    }
};

// Visiting A, B, A lists each page once, latest first; Stop ends "Working..."
// at once with the page shown before still up.
TEST_F(HelpPages, AddressListStopAndSearch) {
    const QString a = page("a.htm", "Page A"), b = page("b.htm", "Page B");
    frmHelp help;
    help.StartingAddress = a;
    help.show();
    ASSERT_TRUE(waitFor([&] { return help.windowTitle() == "Page A"; }));
    enter(help, b);
    ASSERT_TRUE(waitFor([&] { return help.windowTitle() == "Page B"; }));
    enter(help, a);
    ASSERT_TRUE(waitFor([&] { return help.windowTitle() == "Page A"; }));
    EXPECT_EQ(entries(help), a + ' ' + b);
    help.toolbarClick("Back");
    EXPECT_EQ(help.windowTitle(), "Page B");
    EXPECT_EQ(entries(help), b + ' ' + a);

    enter(help, a);
    help.timerTick();
    EXPECT_EQ(help.windowTitle(), "Working...");
    help.toolbarClick("Stop");
    EXPECT_EQ(help.windowTitle(), "Page B");
    EXPECT_FALSE(help.timer().isActive());
    testing::settle(50);
    EXPECT_EQ(help.browser()->LocationURL(), b);

    help.toolbarClick("Search");
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

struct MainWindowRig : ::testing::Test, testing::QtRig {
    frmTavo window{tavo, shell};
};

// The label reloads the file into the one window; a broken or missing file
// leaves it up; a double click closes it.
TEST_F(MainWindowRig, ControlCodeReference) {
    QTemporaryDir dir;
    const QString before = QDir::currentPath();
    QDir::setCurrent(dir.path());
    const auto write = [&](const QByteArray& rtf) {
        QFile f(dir.filePath("ansi.rtf"));
        f.open(QIODevice::WriteOnly);
        f.write(rtf);
    };
    write("{\\rtf1 first\\par}");
    window.lblControlCodes_Click();
    frmAnsiTable* ref = window.ansiWindow();
    ASSERT_NE(ref, nullptr);
    EXPECT_EQ(ref->pane()->toPlainText().trimmed(), "first");
    write("{\\rtf1 second\\par}");
    window.lblControlCodes_Click();
    EXPECT_EQ(window.ansiWindow(), ref);
    EXPECT_EQ(ref->pane()->toPlainText().trimmed(), "second");
    write(QByteArray("\x00\xff{\\rtf1{{{", 10));
    window.lblControlCodes_Click();
    QFile::remove(dir.filePath("ansi.rtf"));
    window.lblControlCodes_Click();
    EXPECT_TRUE(ref->isVisible());
    QDir::setCurrent(before);

    QMouseEvent dbl(QEvent::MouseButtonDblClick, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton,
                    Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(ref->pane()->viewport(), &dbl);
    ASSERT_TRUE(waitFor([&] { return window.ansiWindow() == nullptr; }));
}

// One window: Escape drops the edits, F1 opens the help; the wacky box shows
// the list and OK applies and closes.
TEST_F(MainWindowRig, Preferences) {
    window.mnuFilePrefs_Click();
    frmTavoPrefs* prefs = window.prefsWindow();
    window.mnuFilePrefs_Click();
    EXPECT_EQ(window.prefsWindow(), prefs);
    prefs->findChild<QLineEdit*>("tbStartupBarker")->setText("Dropped");
    for (QShortcut* s : prefs->findChildren<QShortcut*>())
        if (s->key() == QKeySequence(Qt::Key_F1)) emit s->activated();
    EXPECT_EQ(log.back(), "help");
    QKeyEvent esc(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(prefs, &esc);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(window.prefsWindow(), nullptr);
    EXPECT_EQ(tavo.StartupBarker, kDefaultStartupBarker);
    EXPECT_EQ(store.writes(), 0);

    window.mnuFilePrefs_Click();
    prefs = window.prefsWindow();
    prefs->show();
    auto* list = prefs->findChild<QListWidget*>("lbObfuscateType");
    EXPECT_FALSE(list->isVisible());
    prefs->findChild<QCheckBox*>("chkObfuscate")->click();
    EXPECT_TRUE(list->isVisible());
    prefs->findChild<QPushButton*>("cmdOK")->click();
    EXPECT_EQ(store.get("General", "Obfuscate", ""), "True");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(window.prefsWindow(), nullptr);
}

}  // namespace
}  // namespace zelvan
