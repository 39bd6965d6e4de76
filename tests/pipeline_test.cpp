// The capture pipeline: the ring, the drain into panes and filter, the capture
// loops and the timed waits, all on virtual time.

#include <gtest/gtest.h>

#include "support/fakes.h"

namespace zelvan {
namespace {

using testing::FakeFilter;
using testing::Rig;

struct PipelineTest : ::testing::Test {
    Rig rig;
    Tavo& tavo = rig.tavo;
    FakeFilter* filter = nullptr;

    void SetUp() override {
        rig.console();
        rig.console().obIFAscii_Click();  // starts nothing: no loop, no stop
        filter = rig.shell.lastFilter;
    }
};

TEST_F(PipelineTest, NullByteEndsTheTurnAndIsCountedButNotShown) {
    rig.queue(std::string("A\0B", 3));
    tavo.drainQueue();
    EXPECT_EQ(filter->received, "A");
    EXPECT_EQ(rig.view().status, "null byte");
    EXPECT_EQ(rig.view().read.text(), "A");
    tavo.drainQueue();
    EXPECT_EQ(filter->received, "AB");
    EXPECT_EQ(rig.view().status, "");
    EXPECT_EQ(rig.view().raw.text(), "AB");
    EXPECT_EQ(tavo.totalChars, 3);
    EXPECT_EQ(rig.view().totChars, "3");
}

}  // namespace
}  // namespace zelvan
