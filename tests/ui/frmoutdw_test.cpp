// The display window with its port on a pseudo-terminal, the sign preview,
// and the deferred refresh their widgets use.

#include <gtest/gtest.h>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QtTest/QTest>

#include "core/appshell.h"
#include "core/frmtavo.h"
#include "display/frmoutdw.h"
#include "display/frmsignpreview.h"
#include "platform/deferredrefresh.h"
#include "platform/devicemap.h"
#include "support/displayfakes.h"
#include "support/pty.h"
#include "support/qtrig.h"

namespace zelvan {
namespace {

using testing::waitFor;

struct DisplayWindowTest : ::testing::Test, testing::QtRig {
    testing::RowsFilter filter;
    testing::PtyEnd sign;
    std::unique_ptr<frmOutDW> window;

    void SetUp() override {
        ASSERT_FALSE(sign.slave.empty());
        setDevicePath(store, 2, sign.slave);
        tavo.view = &shell.view;
        tavo.splitStartupBarker();
        tavo.bInTDS = true;
        tavo.frmInTDS = &filter;
        window = std::make_unique<frmOutDW>(tavo, shell);
    }
    template <typename T>
    T* child(const char* name) {
        T* w = window->findChild<T*>(QString::fromLatin1(name));
        EXPECT_NE(w, nullptr) << name;
        return w;
    }
};

// Default boxes, the closed port's notice, then a caption in the pending box
// and the preview, where the operator's edit wins over an earlier refresh.
TEST_F(DisplayWindowTest, FromAClosedPortThroughACaptionToClosing) {
    window->show();
    std::string ticked;
    for (const char* name :
         {"chkRevOnCD", "chkInput", "chkReverse", "chkFilter", "chkSunrise", "chkRollup"})
        ticked += child<QCheckBox>(name)->isChecked() ? '1' : '0';
    EXPECT_EQ(ticked, "111000");
    child<QPushButton>("cmdBright")->click();
    EXPECT_EQ(window->noticeText(), QStringLiteral("Open port first."));
    child<QCheckBox>("chkFilter")->click();
    EXPECT_TRUE(!child<QCheckBox>("chkFilter")->isChecked() && sign.take().empty());

    window->showForm();
    EXPECT_TRUE(waitFor([&] { return child<QPushButton>("cmdPortOutOpen")->text() == "Close"; }));
    frmSignPreview preview(window->console().link(), store);
    filter.rows[15] = "HELLO \x95";
    window->doInput(kStyleRows, "");
    auto* box = child<QPlainTextEdit>("tbPending");
    EXPECT_TRUE(waitFor([&] { return box->toPlainText() == QStringLiteral("HELLO \u2022"); }));
    EXPECT_TRUE(waitFor([&] { return !sign.take().empty(); }));
    EXPECT_TRUE(waitFor([&] { return preview.preview().model().frames > 0; }));
    filter.rows[15] = "FROM THE CAPTION";
    window->doInput(kStyleRows, "");
    box->setPlainText(QStringLiteral("typed by hand"));
    testing::settle(2 * DeferredRefresh::kIntervalMs);
    EXPECT_EQ(box->toPlainText(), QStringLiteral("typed by hand"));
    EXPECT_EQ(window->console().pendingText(), "typed by hand");

    // Send@ sends the bytes the operator sees: a key typed leaves the others,
    // line breaks count in a reversed row's column.
    QApplication::clipboard()->setText(QStringLiteral("X\u00FBA0Y\u00FB0DZ\u00FB0AW"));
    child<QPushButton>("cmdFromReadable")->click();
    testing::settle(2 * DeferredRefresh::kIntervalMs);
    box->moveCursor(QTextCursor::End);
    box->moveCursor(QTextCursor::Left);  // behind the lone LF
    QTest::keyClicks(box, QStringLiteral("\r"));
    child<QPushButton>("cmdSendAt")->click();
    const std::string frames = testing::bytes({1, 0x20, 0x22, 0x1F + 24}) + "W\n\r\nZ\rY\xA0X\x01";
    std::string got;
    EXPECT_TRUE(waitFor([&] { return (got += sign.take()).ends_with(frames); })) << got;

    window->hideForm();
    EXPECT_FALSE(window->isVisible() || window->console().isPortOpen());
}

TEST(SignPreviewWindow, OpensFromTheMenuWhereItWasLeftAndKeepsItsPlace) {
    testing::QtRig rig;
    const auto stored = [&](const char* key) { return rig.store.get("SignPreview", key, ""); };
    for (auto [key, value] :
         {std::pair{"left", "40"}, {"top", "50"}, {"width", "900"}, {"height", "400"}})
        rig.store.set("SignPreview", key, value);
    std::unique_ptr<DisplayOutput> display;  // outlives the shell, which holds the preview
    AppShell shell;
    shell.showMainWindow(rig.tavo);
    const std::unique_ptr<frmTavo> main(shell.mainWindow());
    display = shell.makeDisplay(rig.tavo);
    for (QAction* a : main->findChildren<QAction*>())
        if (a->text() == QStringLiteral("&Sign Preview")) a->trigger();
    frmSignPreview* preview = nullptr;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* p = dynamic_cast<frmSignPreview*>(w); p && p->isVisible()) preview = p;
    ASSERT_NE(preview, nullptr);
    EXPECT_EQ(QRect(preview->pos(), preview->size()), QRect(40, 50, 900, 400));
    preview->resize(800, 380);
    preview->move(10, 20);
    EXPECT_TRUE(waitFor([&] { return stored("left") == "10" && stored("top") == "20"; }));
    EXPECT_EQ(stored("width") + "x" + stored("height"), "800x380");
}

// One update per burst, at once on a read-back, and none of a widget gone.
TEST(DeferredRefreshTest, ABurstMakesOneUpdateOfEachWidgetAndNoneOfOneGone) {
    int pane = 0, label = 0, gone = 0;
    DeferredRefresh paneRefresh([&] { ++pane; }), labelRefresh([&] { ++label; });
    auto goneRefresh = std::make_unique<DeferredRefresh>([&] { ++gone; });
    for (int i = 0; i < 50; ++i) {
        paneRefresh.request();
        labelRefresh.request();
        goneRefresh->request();
    }
    goneRefresh.reset();
    ASSERT_TRUE(waitFor([&] { return pane + label > 0; }));
    EXPECT_EQ(pane * 10 + label, 11);  // both in the same turn
    paneRefresh.request();
    paneRefresh.flush();
    EXPECT_EQ(pane, 2);
    testing::settle(DeferredRefresh::kIntervalMs * 2);
    EXPECT_EQ(pane * 100 + label * 10 + gone, 210);
}

}  // namespace
}  // namespace zelvan
