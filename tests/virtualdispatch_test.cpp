// The virtual-time dispatch that every logic test stands on: timers fire as a
// window system's would, and nothing waits for real time.

#include <gtest/gtest.h>

#include "platform/virtualdispatch.h"

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

TEST(VirtualDispatch, PostedWorkRunsInTheNextYieldNotTheOneThatPostedIt) {
    VirtualDispatch d;
    std::vector<int> order;
    d.post([&] {
        order.push_back(1);
        d.post([&] { order.push_back(2); });
    });
    d.yield();
    EXPECT_EQ(order, (std::vector<int>{1}));
    d.yield();
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
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

TEST(VirtualDispatch, ATimerDestroyedInsideAHandlerDoesNotFire) {
    VirtualDispatch d;
    int second = 0;
    std::unique_ptr<Timer> b;
    auto a = d.makeTimer([&] { b.reset(); });
    b = d.makeTimer([&] { ++second; });
    for (Timer* t : {a.get(), b.get()}) {
        t->setInterval(100);
        t->setEnabled(true);
    }
    d.advance(100);
    EXPECT_EQ(second, 0);
}

}  // namespace
}  // namespace zelvan
