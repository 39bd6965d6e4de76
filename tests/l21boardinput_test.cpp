// The timecode board window's rules, register by register, over a scripted
// board library: finding and naming the boards, the setup of a PCI board, the
// caption word rules of a poll and the poll's share of the ring.

#include <gtest/gtest.h>

#include "line21/l21boardinput.h"
#include "support/fakes.h"
#include "support/scriptedboard.h"

namespace zelvan {
namespace {

using Log = std::vector<std::string>;

// Two caption bytes with their parity bits, in a word with data and the marker.
constexpr std::uint32_t word(std::uint8_t first, std::uint8_t second) {
    return 0xC0000000u | static_cast<std::uint32_t>(second) << 8 | first;
}

struct BoardInput : ::testing::Test {
    testing::Rig rig;
    InL21 memory;
    testing::ScriptedBoard lib;
    testing::NullBoardView view;
    std::unique_ptr<L21BoardInput> input;

    void load() {
        input = std::make_unique<L21BoardInput>(rig.tavo, memory, lib, view);
        lib.log.clear();
    }
    Log listed() const {
        Log texts;
        for (const auto& e : input->entries()) texts.push_back(e.text);
        return texts;
    }
    // A PCI board at CC00, set up, with these words waiting.
    void pciBoardWith(std::initializer_list<std::uint32_t> words) {
        lib.kinds = {{0xCC00, 4}};
        for (auto [reg, v] : {std::pair{0x08, 0x10}, {0xFE, 0x01}, {0x0F, 0x1E}})
            lib.regs[{0xCC00, reg}] = v;
        BoardRegister reg = 0x50;
        for (std::uint32_t w : words) lib.regs[{0xCC00, std::exchange(reg, reg + 4)}] = w;
        load();
    }
};

TEST_F(BoardInput, BoardsAreFoundInProbingOrderAndNamedByKindOrByWhatTheyReport) {
    lib.kinds = {{0x1000, 1}, {0x220, 3}, {0xCC00, 4}, {0xDD00, 4}, {0x380, 7}};
    for (BoardRegister r = 0; r < 5; ++r) lib.regs[{0x220, 0x3E0 + r}] = "RDRB2"[r];
    lib.regs[{0x220, 0x3EF}] = 0x93;
    lib.regs[{0xCC00, 0x08}] = 0xA0;  // model 1010, revision A1
    lib.regs[{0xCC00, 0x06}] = 'A';
    lib.regs[{0xCC00, 0x07}] = '1';
    lib.regs[{0xDD00, 0x08}] = 0x60;  // a model no table holds: the name read before stays
    input = std::make_unique<L21BoardInput>(rig.tavo, memory, lib, view);
    EXPECT_EQ(lib.log.front(), "check 1000");
    EXPECT_EQ(std::count(lib.log.begin(), lib.log.end(), "check 3A0"), 1);
    EXPECT_EQ(listed(),
              (Log{"No Board Currently Selected", "PC-LTC/IOR at 1000",
                   "PCI-VLTC/GeN (rev. A1 )  at  CC00", "PCI-VLTC/GeN (rev. A1 )  at  DD00",
                   "PC-VITC/RDR (rev. B2 )  at  220"}));
    // The first found is in use, whatever its kind; a kind 1 board stays silent.
    EXPECT_EQ(input->boardAddress, 0x1000);
    lib.log.clear();
    lib.regs[{0x1000, 0xFE}] = 1;
    input->readBoard();
    EXPECT_TRUE(lib.log.empty());
    // Choosing the first entry by hand leaves the board in use.
    input->cboBrdLst_Click(2);
    input->cboBrdLst_Click(0);
    EXPECT_EQ(input->boardAddress, 0xCC00);
    EXPECT_EQ(input->boardKind, 4);
}

TEST_F(BoardInput, WithNoBoardTheListHoldsOneEntryAndNothingIsRead) {
    load();
    EXPECT_EQ(listed(), Log{"No Board Currently Selected"});
    EXPECT_EQ(input->selectedEntry(), 0);
    input->readBoard();
    EXPECT_TRUE(lib.log.empty());
}

TEST_F(BoardInput, APciBoardIsSetUpAtLoadWhenItAsks) {
    lib.kinds = {{0xCC00, 4}};
    lib.regs[{0xCC00, 0x08}] = 0x14;  // model 1, setup to do
    lib.regs[{0xCC00, 0x2E}] = 0x05;
    input = std::make_unique<L21BoardInput>(rig.tavo, memory, lib, view);
    const auto setup = std::find(lib.log.begin(), lib.log.end(), "info") + 1;
    EXPECT_EQ(Log(setup, lib.log.end()),
              (Log{"r1 8@CC00", "r1 2E@CC00", "w1 2E=0@CC00", "w4 20=80808080@CC00",
                   "cmd 5A,0@CC00", "cmd 2F,0@CC00", "w1 2E=45@CC00"}));
    lib.regs[{0xCC00, 0x08}] = 0x10;
    load();
    input->initUSBL21();
    EXPECT_EQ(lib.log, Log{"r1 8@CC00"});
}

TEST_F(BoardInput, APollTakesValidWordsInRegisterOrderWithoutParity) {
    pciBoardWith({word(0xC8, 0xE5), word(0xEC, 0xEC), word(0xEF, 0x20), word(0xD9, 0x2C)});
    EXPECT_EQ(input->readCaptionData(0xCC00), "Hello Y,");
    EXPECT_EQ(lib.log, (Log{"r1 FE@CC00", "r1 F@CC00", "r4 50@CC00", "r4 54@CC00", "r4 58@CC00",
                            "r4 5C@CC00", "w1 2F=0@CC00"}));

    // No data bit, a wrong marker, and a zero pair anywhere but the first register.
    const std::uint32_t zero = word(0x80, 0x80);
    pciBoardWith({zero, zero, word(0xC1, 0xC2) & 0x7FFFFFFF, word(0xC1, 0xC2) | 0x01000000});
    EXPECT_EQ(input->readCaptionData(0xCC00), std::string(2, '\0'));

    lib.regs[{0xCC00, 0x0F}] = 0x1D;  // not caption words: none read, the poll closed
    lib.log.clear();
    EXPECT_EQ(input->readCaptionData(0xCC00), "");
    EXPECT_EQ(lib.log, (Log{"r1 FE@CC00", "r1 F@CC00", "w1 2F=0@CC00"}));

    lib.regs[{0xCC00, 0xFE}] = 0x02;  // nothing waiting: nothing else touched
    lib.log.clear();
    EXPECT_EQ(input->readCaptionData(0xCC00), "");
    EXPECT_EQ(lib.log, Log{"r1 FE@CC00"});
}

TEST_F(BoardInput, APollQueuesItsBytesOnlyWhenTheRingHasRoomForAWholePoll) {
    pciBoardWith({word(0x41, 0x42), word(0x43, 0x44), word(0x45, 0x46), word(0x47, 0x48)});
    rig.tavo.rawQueueIn = 1017;  // room for 7 bytes
    input->readBoard();
    EXPECT_TRUE(lib.log.empty()) << "no register touched, so the board keeps its words";
    rig.tavo.rawQueueIn = 1016;  // room for 8
    input->readBoard();
    EXPECT_EQ(rig.tavo.queueRoom(), 0);
    EXPECT_EQ(rig.tavo.rawQueue[1015], 'A');
    EXPECT_EQ(rig.tavo.rawQueue[1022], 'H');
}

}  // namespace
}  // namespace zelvan
