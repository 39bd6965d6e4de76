// Window updates that follow the pipeline: a burst makes one update of each
// widget, a read-back takes it at once, and a widget that is gone is never
// touched.

#include "platform/deferredrefresh.h"

#include <gtest/gtest.h>

#include <memory>

#include "support/qtrig.h"

namespace zelvan {
namespace {

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
    ASSERT_TRUE(testing::waitFor([&] { return pane + label > 0; }));
    EXPECT_EQ(pane * 10 + label, 11);  // both in the same turn
    paneRefresh.request();
    paneRefresh.flush();
    EXPECT_EQ(pane, 2);
    testing::settle(DeferredRefresh::kIntervalMs * 2);
    EXPECT_EQ(pane * 100 + label * 10 + gone, 210);
}

}  // namespace
}  // namespace zelvan
