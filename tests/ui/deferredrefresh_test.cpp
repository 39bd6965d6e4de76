// Window updates that follow the pipeline: many changes make one update of
// each widget, a read-back takes it at once, and a widget that is gone is
// never touched.

#include "platform/deferredrefresh.h"

#include <gtest/gtest.h>

#include <memory>

#include "support/qtrig.h"

namespace zelvan {
namespace {

TEST(DeferredRefreshTest, ABurstMakesOneUpdateOfEachWidgetAndNoneOfOneGone) {
    int paneUpdates = 0, labelUpdates = 0, goneUpdates = 0;
    DeferredRefresh pane([&] { ++paneUpdates; });
    DeferredRefresh label([&] { ++labelUpdates; });
    auto gone = std::make_unique<DeferredRefresh>([&] { ++goneUpdates; });
    for (int i = 0; i < 50; ++i) {
        pane.request();
        label.request();
        gone->request();
    }
    gone.reset();
    ASSERT_TRUE(testing::waitFor([&] { return paneUpdates + labelUpdates > 0; }));
    EXPECT_EQ(paneUpdates, 1);  // both in the same turn
    EXPECT_EQ(labelUpdates, 1);

    pane.request();  // a read-back takes a waiting update at once, and only once
    pane.flush();
    EXPECT_EQ(paneUpdates, 2);
    testing::settle(DeferredRefresh::kIntervalMs * 2);
    EXPECT_EQ(paneUpdates * 100 + labelUpdates * 10 + goneUpdates, 210);
}

}  // namespace
}  // namespace zelvan
