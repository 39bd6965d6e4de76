// The caption memory: banks, roles, fill patterns, the row readers and the
// text of the memory panes.

#include <gtest/gtest.h>

#include "line21/inl21.h"
#include "support/l21fakes.h"

namespace zelvan {
namespace {

using testing::FakeL21View;

const std::string kBlankRow(32, ' ');

void writeRow(InL21& m, std::int16_t bank, std::int16_t row, const std::string& text) {
    auto& r = m.memBank[bank - 1].rowText[row - 1];
    r.fill(' ');
    std::copy(text.begin(), text.end(), r.begin());
}

TEST(CaptionMemory, InitLeavesBothBanksBlankAndRolesAtOneAndTwo) {
    InL21 m;
    m.fillMemory(1);
    m.fillMemory(2);
    m.flipMemory();
    m.iChannel = 1;
    m.initL21();
    EXPECT_EQ(m.iDM, 1);
    EXPECT_EQ(m.iNM, 2);
    EXPECT_EQ(m.iWriteBank, 2);
    EXPECT_EQ(m.iChannel, 1) << "the channel belongs to the windows";
    for (std::int16_t bank : {1, 2}) {
        const std::string text = m.memoryText(bank);
        EXPECT_EQ(text.size(), 508u);
        std::string expected;
        for (int row = 1; row <= 15; ++row) expected += kBlankRow + (row < 15 ? "\r\n" : "");
        EXPECT_EQ(text, expected);
        for (bool used : m.memBank[bank - 1].rowUsed) EXPECT_FALSE(used);
    }
    for (std::int16_t i = -1; i <= 16; ++i) EXPECT_EQ(m.getExternalTextL21(i), "");
    EXPECT_EQ(m.musicNote, "\x95");
}

TEST(CaptionMemory, FillPatternBelongsToTheBankNumberNotTheRole) {
    InL21 m;
    m.fillMemory(m.iDM);
    EXPECT_EQ(m.getExternalTextL21(1), std::string(32, '1'));
    EXPECT_TRUE(m.memBank[0].rowUsed[14]);
    m.flipMemory();
    m.fillMemory(m.iDM);
    EXPECT_EQ(m.getExternalTextL21(15), std::string(32, '2'));
    EXPECT_EQ(m.memoryText(m.iNM).substr(0, 32), std::string(32, '1'));
}

TEST(CaptionMemory, EraseTouchesOnlyTheBankOfItsRole) {
    InL21 m;
    m.fillMemory(1);
    m.fillMemory(2);
    m.eraseNM();
    EXPECT_EQ(m.getExternalTextL21(7), std::string(32, '1'));
    EXPECT_EQ(m.rowString(2, 7), kBlankRow);
    EXPECT_FALSE(m.memBank[1].rowUsed[6]);
    m.eraseDM();
    EXPECT_EQ(m.getExternalTextL21(7), "");
    EXPECT_FALSE(m.memBank[0].rowUsed[6]);
}

TEST(CaptionMemory, FlipSwapsRolesAndTwoFlipsRestoreThem) {
    InL21 m;
    writeRow(m, 1, 3, "one");
    writeRow(m, 2, 3, "two");
    m.flipMemory();
    EXPECT_EQ(m.iDM, 2);
    EXPECT_EQ(m.iNM, 1);
    EXPECT_EQ(m.getExternalTextL21(3), "two");
    m.flipMemory();
    EXPECT_EQ(m.iDM, 1);
    EXPECT_EQ(m.getExternalTextL21(3), "one");
}

TEST(CaptionMemory, FlipRefreshesTheWindowInUseDisplayedPaneFirst) {
    VirtualDispatch dispatch;
    InL21 m;
    FakeL21View window(m, dispatch);
    writeRow(m, 2, 1, "shown after the flip");
    m.flipMemory();  // no window: nothing to refresh, and nothing breaks
    m.flipMemory();
    m.view = &window;
    m.flipMemory();
    EXPECT_EQ(window.refreshes, (std::vector<std::string>{"DM", "NM"}));
    EXPECT_EQ(window.rtbDM.substr(0, 20), "shown after the flip");
    EXPECT_EQ(window.rtbNM.substr(0, 32), kBlankRow);
}

TEST(CaptionMemory, RowReadersStripTrailingOrBothEnds) {
    InL21 m;
    writeRow(m, 1, 2, "  Hi");
    EXPECT_EQ(m.getExternalTextL21(2), "  Hi");
    EXPECT_EQ(m.getExternalTextTrimmedL21(2), "Hi");
    writeRow(m, 1, 15, std::string(32, 'x'));
    EXPECT_EQ(m.getExternalTextL21(15), std::string(32, 'x'));
    EXPECT_EQ(m.getExternalTextTrimmedL21(16), "");
    EXPECT_EQ(m.getExternalTextTrimmedL21(0), "");
    EXPECT_EQ(m.rowString(1, 2).size(), 32u) << "reading leaves the row as it was";
}

TEST(CaptionMemory, BankNumbersOutOfRangeAreIgnored) {
    InL21 m;
    m.fillMemory(0);
    m.fillMemory(3);
    EXPECT_EQ(m.memoryText(3), "");
    EXPECT_EQ(m.rowString(1, 16), "");
    EXPECT_EQ(m.memoryText(1).find('1'), std::string::npos);
}

TEST(CaptionMemory, DumpShowsRolesStateAndNonBlankRows) {
    InL21 m;
    writeRow(m, 2, 15, "Hi");
    const std::string dump = m.dump();
    EXPECT_NE(dump.find("iDM=1 iNM=2 iWriteBank=2 iRow=1 iCol=1 iMode=1"), std::string::npos);
    EXPECT_NE(dump.find("bank 2 (NM):\n15|Hi" + std::string(30, ' ') + "|\n"), std::string::npos);
    EXPECT_NE(dump.find("bank 1 (DM):\nbank 2"), std::string::npos) << dump;
}

}  // namespace
}  // namespace zelvan
