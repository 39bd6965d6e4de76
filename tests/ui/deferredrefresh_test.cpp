// Window updates that follow the pipeline: many changes make one update of
// each widget, a read-back takes it at once, and a widget that is gone is
// never touched.

#include "platform/deferredrefresh.h"

#include <gtest/gtest.h>

#include <memory>

#include "support/qtrig.h"

namespace zelvan {
namespace {

using testing::settle;
using testing::waitFor;

TEST(DeferredRefreshTest, ABurstOfChangesMakesOneUpdateOfEachWidgetTogether) {
    int paneUpdates = 0, labelUpdates = 0;
    DeferredRefresh pane([&] { ++paneUpdates; });
    DeferredRefresh label([&] { ++labelUpdates; });
    for (int i = 0; i < 50; ++i) {
        pane.request();
        label.request();
    }
    ASSERT_TRUE(waitFor([&] { return paneUpdates + labelUpdates > 0; }));
    EXPECT_EQ(paneUpdates, 1);  // both in the same turn
    EXPECT_EQ(labelUpdates, 1);
    settle(DeferredRefresh::kIntervalMs * 2);
    EXPECT_EQ(paneUpdates + labelUpdates, 2);

    pane.request();  // a read-back takes a waiting update at once, and only once
    pane.flush();
    EXPECT_EQ(paneUpdates, 2);
    settle(DeferredRefresh::kIntervalMs * 2);
    EXPECT_EQ(paneUpdates, 2);
}

TEST(DeferredRefreshTest, AWidgetGoneBeforeTheUpdateIsNotTouched) {
    int updates = 0;
    auto gone = std::make_unique<DeferredRefresh>([&] { ++updates; });
    DeferredRefresh stays([&] { ++updates; });
    gone->request();
    stays.request();
    gone.reset();
    ASSERT_TRUE(waitFor([&] { return updates == 1; }));
    settle(DeferredRefresh::kIntervalMs * 2);
    EXPECT_EQ(updates, 1);
}

}  // namespace
}  // namespace zelvan
