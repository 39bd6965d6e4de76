// The display window for real, its port on a pseudo-terminal: the controls
// that need the widgets. The frames themselves are checked in the console's
// and the program's own end-to-end tests.

#include <gtest/gtest.h>
#include <QCheckBox>
#include <QPlainTextEdit>
#include <QPushButton>

#include "display/frmoutdw.h"
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

// The pending box shows the caption in the window's code page.
TEST_F(DisplayWindowTest, ShowFormOpensTheLineAndHideFormClosesIt) {
    window->showForm();
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(waitFor([&] { return child<QPushButton>("cmdPortOutOpen")->text() == "Close"; }));
    filter.rows[15] = "HELLO \x95";
    window->doInput(kStyleRows, "");
    EXPECT_TRUE(waitFor([&] {
        return child<QPlainTextEdit>("tbPending")->toPlainText() == QStringLiteral("HELLO \u2022");
    }));
    EXPECT_TRUE(waitFor([&] { return !sign.take().empty(); }));
    window->hideForm();
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(window->console().isPortOpen());
}

// A refresh asked for before the operator's edit must not bring older text back.
TEST_F(DisplayWindowTest, TheOperatorsEditOfThePendingBoxWins) {
    window->show();
    filter.rows[15] = "FROM THE CAPTION";
    window->doInput(kStyleRows, "");
    auto* box = child<QPlainTextEdit>("tbPending");
    box->setPlainText(QStringLiteral("typed by hand"));
    testing::settle(2 * DeferredRefresh::kIntervalMs);
    EXPECT_EQ(box->toPlainText(), QStringLiteral("typed by hand"));
    EXPECT_EQ(window->console().pendingText(), "typed by hand");
}

// The buttons reach the link's notice and the console's filter box.
TEST_F(DisplayWindowTest, ClosedPortGivesTheNoticeInTheWindow) {
    window->show();
    child<QPushButton>("cmdBright")->click();
    EXPECT_EQ(window->noticeText(), QStringLiteral("Open port first."));
    QCheckBox* filterBox = child<QCheckBox>("chkFilter");
    filterBox->click();
    EXPECT_FALSE(filterBox->isChecked());
    EXPECT_TRUE(sign.take().empty());
}

}  // namespace
}  // namespace zelvan
