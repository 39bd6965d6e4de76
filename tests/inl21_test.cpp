// The caption memory: banks and their roles, fill patterns, the row readers
// and the text of the memory panes.

#include <gtest/gtest.h>

#include "line21/inl21.h"
#include "support/l21fakes.h"

namespace zelvan {
namespace {

TEST(CaptionMemory, PatternsBelongToBankNumbersFlipsSwapRolesAndInitBlanksBoth) {
    InL21 m;
    m.fillMemory(m.iDM);
    EXPECT_EQ(m.getExternalTextL21(1), std::string(32, '1'));
    m.flipMemory();
    m.fillMemory(m.iDM);
    EXPECT_EQ(m.getExternalTextL21(15), std::string(32, '2'));
    EXPECT_EQ(m.memoryText(m.iNM).substr(0, 32), std::string(32, '1'));
    m.eraseNM();
    EXPECT_EQ(m.memoryText(1).find('1'), std::string::npos);
    EXPECT_EQ(m.getExternalTextL21(7), std::string(32, '2'));
    m.fillMemory(0);
    m.fillMemory(3);
    EXPECT_EQ(m.memoryText(3), "") << "bank numbers out of range are ignored";

    m.iChannel = 1;
    m.initL21();
    EXPECT_EQ(m.iDM * 10 + m.iNM, 12);
    EXPECT_EQ(m.iChannel, 1) << "init leaves the channel alone";
    std::string blank;
    for (int row = 1; row <= 15; ++row) blank += std::string(32, ' ') + (row < 15 ? "\r\n" : "");
    EXPECT_EQ(m.memoryText(1) + m.memoryText(2), blank + blank);
    EXPECT_FALSE(m.memBank[0].rowUsed[0] || m.memBank[1].rowUsed[14]);
    for (std::int16_t i = -1; i <= 16; ++i) EXPECT_EQ(m.getExternalTextL21(i), "");
}

TEST(CaptionMemory, FlipRefreshesTheWindowInUseDisplayedPaneFirst) {
    VirtualDispatch dispatch;
    InL21 m;
    testing::FakeL21View window(m, dispatch);
    m.fillMemory(2);
    m.view = &window;
    m.flipMemory();
    EXPECT_EQ(window.refreshes, (std::vector<std::string>{"DM", "NM"}));
    EXPECT_EQ(window.rtbDM.substr(0, 32), std::string(32, '2'));
}

}  // namespace
}  // namespace zelvan
