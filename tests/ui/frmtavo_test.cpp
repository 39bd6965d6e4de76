// The main window for real, and the help, reference and preferences windows.

#include <gtest/gtest.h>
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextDocumentFragment>

#include <fstream>

#include "core/appshell.h"
#include "core/frmtavo.h"
#include "display/frmoutdw.h"
#include "platform/qtsettingsstore.h"
#include "support/frmansitable.h"
#include "support/frmhelp.h"
#include "support/frmtavoprefs.h"
#include "support/qtrig.h"

namespace zelvan {
namespace {

using testing::waitFor;

// The program's timed waits keep their times: a coarse timer, which may wake
// 5% early to land on a multiple of 25 ms, is started half-way between two.
// Only earliness is checked: a busy machine makes any timer late.
TEST(Dispatch, ATimerFiresOnTime) {
    QtDispatch dispatch;
    long long firedAt = -1;
    const auto timer = dispatch.makeTimer([&] { firedAt = dispatch.nowMs(); });
    timer->setInterval(1000);
    while (QDeadlineTimer::current().deadline() % 25 != 12) continue;
    const long long start = dispatch.nowMs();
    timer->setEnabled(true);
    EXPECT_TRUE(waitFor([&] { return firedAt >= 0; }));
    EXPECT_GE(firedAt - start, 999);
}

struct MainWindowTest : ::testing::Test, testing::QtRig {
    frmTavo window{tavo, shell};
};

struct SavedMainWindowTest : ::testing::Test, testing::QtRigOf<QtSettingsStore> {
    frmTavo window{tavo, shell};
};

// E X I T's status shows at once: the process ends before any later refresh.
TEST_F(SavedMainWindowTest, QueuedBytesShowAndExitWritesTheSettingsFile) {
    tavo.shell = &shell;
    window.show();
    for (unsigned char b : std::string("Hi\r\n\x14 \xe9")) tavo.queueByte(b);
    tavo.pollInput();
    EXPECT_EQ(window.readHistoryText(), QStringLiteral("HiMJT é"));
    EXPECT_EQ(window.totCharsText(), QStringLiteral("7"));
    QTextCursor cursor(window.findChild<QPlainTextEdit*>("rtbReadHistory")->document());
    cursor.setPosition(3);  // just after "HiM"
    EXPECT_EQ(cursor.charFormat().foreground().color(), QColor(255, 0, 0));

    tavo.InputFilterType = 3;
    tavo.StartupBarker = "One, two<br>\x95 three \xe9";
    window.findChild<QPushButton*>(QStringLiteral("cmdExit"))->click();
    EXPECT_EQ(std::count(log.begin(), log.end(), "endProcess"), 1);
    EXPECT_EQ(window.findChild<QLabel*>("sbStatusPanel1")->text(),
              QStringLiteral("Closing input filter. Stand by..."));
    EXPECT_EQ(QtSettingsStore().get("General", "InputFilterType", ""), "3");
    EXPECT_EQ(QtSettingsStore().get("General", "StartupBarker", ""), tavo.StartupBarker);
}

// Every window is one to a screen reader; the Broadcast EDM entry saves at once;
// a closed caption script window comes back, the same one, from its menu entry.
TEST(Shell, HelpPagesDecoderEntryWindowRolesAndAClosedInputComingBack) {
    const auto entry = [](AppShell& shell) {
        for (QAction* a : shell.mainWindow()->findChildren<QAction*>())
            if (a->text() == QStringLiteral("Broadcast EDM (keep position)")) return a;
        return static_cast<QAction*>(nullptr);
    };
    testing::QtRig rig;
    AppShell shell, restarted;
    shell.showHelp();
    frmHelp* first = shell.lastHelp();
    shell.showHelp();
    ASSERT_NE(first, nullptr);
    EXPECT_NE(shell.lastHelp(), first);
    EXPECT_TRUE(first->isVisible() &&
                shell.lastHelp()->StartingAddress.endsWith("index.htm", Qt::CaseInsensitive));

    shell.showMainWindow(rig.tavo);
    const std::unique_ptr<frmTavo> window(shell.mainWindow());
    std::vector<std::unique_ptr<InputFilter>> filters;
    for (FilterKind kind : kFilterOrder) filters.push_back(shell.makeFilter(kind, rig.tavo));
    for (QWidget* w : QApplication::topLevelWidgets()) {
        const QAccessible::Role role = QAccessible::queryAccessibleInterface(w)->role();
        if (w->windowType() == Qt::Window || w->windowType() == Qt::Dialog) {
            EXPECT_TRUE(role == QAccessible::Window || role == QAccessible::Dialog)
                << w->windowTitle().toStdString();
        }
    }
    for (frmHelp* help : {first, shell.lastHelp()}) help->close();
    const auto choose = [&] {
        for (QAction* a : window->findChildren<QAction*>())
            if (a->text() == QStringLiteral("TDS File")) a->trigger();
        return dynamic_cast<QWidget*>(window->console().filterWindow(FilterKind::TDS));
    };
    QWidget* script = choose();
    ASSERT_NE(script, nullptr);
    EXPECT_TRUE(script->close());
    EXPECT_EQ(choose(), script);
    EXPECT_TRUE(script->isVisible() && rig.tavo.bInTDS);

    ASSERT_NE(entry(shell), nullptr);
    entry(shell)->trigger();
    EXPECT_TRUE(shell.decoder().EdmKeepsPosition);
    Tavo again{rig.dispatch, rig.store, rig.tone};
    restarted.showMainWindow(again);
    const std::unique_ptr<frmTavo> second(restarted.mainWindow());
    EXPECT_TRUE(restarted.decoder().EdmKeepsPosition && entry(restarted)->isChecked());
}

struct HelpPages : ::testing::Test {
    QTemporaryDir dir;
    QString page(const QString& name, const std::string& title) {
        std::ofstream(dir.filePath(name).toStdString())
            << "<html><head><title>" << title << "</title></head><body>roll-up</body></html>";
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

// Visiting A, B, A lists each page once, latest first.
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
    testing::settle(50);
    EXPECT_EQ(help.browser()->LocationURL(), b);

    help.toolbarClick("Search");
    help.searchFor("ROLL-UP");
    ASSERT_TRUE(waitFor([&] { return help.windowTitle() == "Search: ROLL-UP"; }));
    EXPECT_TRUE(help.browser()->toHtml().contains(QUrl::fromLocalFile(a).toString()));
}

// The captions in sight, a spaced-out label ("Setup    Open/Close") by its
// parts; the port button and the filter box also in their other state.
QStringList captionsOf(const QWidget& w) {
    QStringList texts;
    for (const QObject* o : w.findChildren<QObject*>())
        if (!o->isWidgetType() || static_cast<const QWidget*>(o)->isVisibleTo(&w))
            texts << o->property("text").toString() << o->property("title").toString();
    if (texts.contains(kCaptionOpen)) texts << kCaptionClose;
    if (texts.contains(kCaptionStartFilter)) texts << kCaptionStopFilter;
    const QRegularExpression apart(QStringLiteral("\\s{2,}|\\n"));
    return texts.join(u'\n').remove(u'&').split(apart, Qt::SkipEmptyParts);
}

// Each caption a help page quotes (quotes are for captions) is on its window.
TEST_F(MainWindowTest, HelpPagesQuoteCaptionsOfTheirWindows) {
    AppShell app;
    std::vector<std::unique_ptr<InputFilter>> inputs;
    const auto input = [&](FilterKind kind) {
        inputs.push_back(app.makeFilter(kind, tavo));
        return dynamic_cast<const QWidget*>(inputs.back().get());
    };
    const QWidget *serial = input(FilterKind::L21Serial), *usb = input(FilterKind::L21USB),
                  *ascii = input(FilterKind::Ascii), *key = input(FilterKind::Key),
                  *tds = input(FilterKind::TDS), *video = input(FilterKind::L21Video);
    frmOutDW display{tavo, shell};
    frmTavoPrefs prefs{tavo, shell};
    // clang-format off
    const std::pair<QString, std::vector<const QWidget*>> pages[] = {
        {"Index.htm", {&window, &display}}, {"qn_contact.htm", {&window}},
        {"qn_input_line21.htm", {serial, &window}}, {"qn_input_line21usb.htm", {usb}},
        {"qn_input_line21video.htm", {video}},
        {"qn_input_ascii.htm", {ascii}}, {"qn_input_keyboard.htm", {key}},
        {"qn_input_tds.htm", {tds}}, {"qn_output_hlc.htm", {&display}},
        {"qn_over_faq.htm", {&display, &window}}, {"qn_prefs.htm", {&prefs}}};
    // clang-format on
    EXPECT_EQ(QDir(ZELVAN_HELP_DIR).entryList({"*.htm"}).size(), std::size(pages));
    for (const auto& [page, windows] : pages) {
        QStringList captions;
        for (const QWidget* w : windows) captions << captionsOf(*w);
        QFile file(QStringLiteral(ZELVAN_HELP_DIR "/") + page);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << page.toStdString();
        const QString text = QTextDocumentFragment::fromHtml(file.readAll()).toPlainText();
        for (const auto& m : QRegularExpression(QStringLiteral("\"([^\"]+)\"")).globalMatch(text))
            EXPECT_TRUE(captions.contains(m.captured(1)))
                << page.toStdString() << ": " << m.captured(1).toStdString();
    }
}

// The label reloads the file into the one window; a broken file leaves it up.
TEST_F(MainWindowTest, ControlCodeReferenceAndPreferences) {
    QTemporaryDir dir;
    const QString before = QDir::currentPath();
    QDir::setCurrent(dir.path());
    const auto write = [&](const std::string& rtf) {
        std::ofstream(dir.filePath("ansi.rtf").toStdString(), std::ios::binary) << rtf;
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
    write(std::string("\x00\xff{\\rtf1{{{", 10));
    window.lblControlCodes_Click();
    QFile::remove(dir.filePath("ansi.rtf"));
    window.lblControlCodes_Click();
    EXPECT_TRUE(ref->isVisible());
    QDir::setCurrent(before);

    QMouseEvent dbl(QEvent::MouseButtonDblClick, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton,
                    Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(ref->pane()->viewport(), &dbl);
    ASSERT_TRUE(waitFor([&] { return window.ansiWindow() == nullptr; }));

    // Preferences, one window: Escape drops it unapplied, OK applies and closes.
    window.mnuFilePrefs_Click();
    frmTavoPrefs* prefs = window.prefsWindow();
    window.mnuFilePrefs_Click();
    EXPECT_EQ(window.prefsWindow(), prefs);
    QKeyEvent esc(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(prefs, &esc);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(window.prefsWindow(), nullptr);
    EXPECT_EQ(store.writes(), 0);

    window.mnuFilePrefs_Click();
    prefs = window.prefsWindow();
    prefs->show();
    prefs->findChild<QCheckBox*>("chkObfuscate")->click();
    EXPECT_TRUE(prefs->findChild<QListWidget*>("lbObfuscateType")->isVisible());
    prefs->findChild<QPushButton*>("cmdOK")->click();
    EXPECT_EQ(store.get("General", "Obfuscate", ""), "True");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(window.prefsWindow(), nullptr);
}

}  // namespace
}  // namespace zelvan
