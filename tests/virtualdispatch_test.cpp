// The virtual-time dispatch that every logic test stands on: timers fire as a
// window system's would, and nothing waits for real time.

#include <gtest/gtest.h>

#include "support/virtualdispatch.h"

namespace zelvan {
namespace {

TEST(VirtualDispatch, TimerFiresEveryIntervalOnlyWhileEnabledWithAnInterval) {
    VirtualDispatch d;
    std::vector<long long> fired;
    auto timer = d.makeTimer([&] { fired.push_back(d.nowMs()); });
    timer->setEnabled(true);  // interval 0: never fires
    d.advance(10000);
    EXPECT_TRUE(fired.empty());
    timer->setInterval(5000);
    d.advance(12000);
    EXPECT_EQ(fired, (std::vector<long long>{15000, 20000}));
    timer->setEnabled(false);
    d.advance(10000);
    EXPECT_EQ(fired.size(), 2u);
}

TEST(VirtualDispatch, WaitingJumpsToTheNextDeadlineButPlainYieldsNever) {
    VirtualDispatch d;
    bool ran = false;
    d.postAt(3000, [&] { ran = true; });
    d.yield();
    EXPECT_FALSE(ran);
    EXPECT_EQ(d.nowMs(), 0);
    d.yieldOrWait();
    EXPECT_TRUE(ran);
    EXPECT_EQ(d.nowMs(), 3000);
}

}  // namespace
}  // namespace zelvan
