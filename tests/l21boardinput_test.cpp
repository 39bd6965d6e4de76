// The timecode board window's rules, register by register, over a scripted
// board library: finding and naming the boards, the setup of a PCI board, the
// caption word rules of a poll and the poll's share of the ring.

#include <gtest/gtest.h>

#include <memory>

#include "line21/l21boardinput.h"
#include "support/fakes.h"
#include "support/scriptedboard.h"

namespace zelvan {
namespace {

using testing::ScriptedBoard;
using Log = std::vector<std::string>;

struct NullBoardView : L21BoardView {
    void placeWindow() override {}
    void showWindow() override {}
    void hideWindow() override {}
    void addBoardEntry(const std::string&) override {}
    void showBoardSelection(int) override {}
    void setDMText(const std::string&) override {}
    void setNMText(const std::string&) override {}
    void showChannel(std::int16_t) override {}
};

// Two caption bytes with their parity bits, as a board word with data.
constexpr std::uint32_t word(std::uint8_t first, std::uint8_t second) {
    return 0xC0000000u | static_cast<std::uint32_t>(second) << 8 | first;
}

struct BoardInput : ::testing::Test {
    testing::Rig rig;
    InL21 memory;
    ScriptedBoard lib;
    NullBoardView view;
    std::unique_ptr<L21BoardInput> input;

    L21BoardInput& load() {
        input = std::make_unique<L21BoardInput>(rig.tavo, memory, lib, view);
        return *input;
    }
    std::vector<std::string> listed() const {
        std::vector<std::string> texts;
        for (const auto& e : input->entries()) texts.push_back(e.text);
        return texts;
    }
    // A PCI board at CC00 with its setup done, words waiting in the registers.
    void pciBoardWith(std::initializer_list<std::uint32_t> words) {
        lib.put(0xCC00, 4);
        lib.set(0xCC00, 0x08, 0x10);
        lib.set(0xCC00, 0xFE, 0x01);
        lib.set(0xCC00, 0x0F, 0x1E);
        BoardRegister reg = 0x50;
        for (std::uint32_t w : words) lib.set(0xCC00, std::exchange(reg, reg + 4), w);
        load();
        lib.take();
    }
};

TEST_F(BoardInput, WithNoBoardTheListHoldsOneEntryAndNothingIsRead) {
    load();
    const Log log = lib.take();
    ASSERT_EQ(log.size(), 19u);  // 18 probes and the library's info
    EXPECT_EQ(log.front(), "check 1000");
    EXPECT_EQ(log[2], "check CC00");
    EXPECT_EQ(log[10], "check 200");
    EXPECT_EQ(log[17], "check 3A0");
    EXPECT_EQ(listed(), Log{"No Board Currently Selected"});
    EXPECT_EQ(input->selectedEntry(), 0);
    EXPECT_EQ(input->boardKind, 0);
    input->readBoard();
    EXPECT_TRUE(lib.take().empty());
    EXPECT_TRUE(rig.tavo.queueEmpty());
}

TEST_F(BoardInput, TheFirstBoardInProbingOrderIsSelectedWhateverItsKind) {
    lib.put(0x300, 4);
    lib.put(0x1100, 2);
    load();
    // A PCI board whose model register reads 0 has no name of its own.
    EXPECT_EQ(listed(), (Log{"No Board Currently Selected", "PC-LTC/MMR at 1100", "300"}));
    EXPECT_EQ(input->entries()[1].data, 0x1100);
    EXPECT_EQ(input->selectedEntry(), 1);
    EXPECT_EQ(input->boardAddress, 0x1100);
    EXPECT_EQ(input->boardKind, 2);

    // Choosing the first entry by hand leaves the board in use.
    input->cboBrdLst_Click(2);
    EXPECT_EQ(input->boardAddress, 0x300);
    input->cboBrdLst_Click(0);
    EXPECT_EQ(input->boardAddress, 0x300);
    EXPECT_EQ(input->boardKind, 4);
}

TEST_F(BoardInput, BoardsAreNamedByKindAndByWhatTheyReportOfThemselves) {
    lib.put(0x1000, 1);
    lib.put(0x220, 3);  // a VITC reader, revision B2
    for (BoardRegister r = 0; r < 5; ++r) lib.set(0x220, 0x3E0 + r, std::string("RDRB2")[r]);
    lib.set(0x220, 0x3EF, 0x93);
    lib.put(0xCC00, 4);  // model 1010, revision A1
    lib.set(0xCC00, 0x08, 0xA0);
    lib.set(0xCC00, 0x06, 'A');
    lib.set(0xCC00, 0x07, '1');
    lib.put(0xDD00, 4);  // a model no table holds: the name read before stays
    lib.set(0xDD00, 0x08, 0x60);
    lib.put(0x380, 7);  // a kind no table holds: not listed
    load();
    EXPECT_EQ(listed(),
              (Log{"No Board Currently Selected", "PC-LTC/IOR at 1000",
                   "PCI-VLTC/GeN (rev. A1 )  at  CC00", "PCI-VLTC/GeN (rev. A1 )  at  DD00",
                   "PC-VITC/RDR (rev. B2 )  at  220"}));
}

TEST_F(BoardInput, APciBoardIsSetUpOnceAtLoadAndOthersNotAtAll) {
    lib.put(0xCC00, 4);
    lib.set(0xCC00, 0x08, 0x14);  // model 1, setup to do
    lib.set(0xCC00, 0x2E, 0x05);
    load();
    Log log = lib.take();
    const auto info = std::find(log.begin(), log.end(), "info");
    EXPECT_EQ(Log(info + 1, log.end()),
              (Log{"r1 8@CC00", "r1 2E@CC00", "w1 2E=0@CC00", "w4 20=80808080@CC00",
                   "cmd 5A,0@CC00", "cmd 2F,0@CC00", "w1 2E=45@CC00"}));

    lib.set(0xCC00, 0x08, 0x10);  // nothing to do
    load();
    log = lib.take();
    EXPECT_EQ(log.back(), "r1 8@CC00");

    lib.kinds = {{0x300, 3}};
    load();
    EXPECT_EQ(lib.take().back(), "info");
}

TEST_F(BoardInput, FourWordsGiveEightBytesInRegisterOrderWithoutParity) {
    pciBoardWith({word(0xC8, 0xE5), word(0xEC, 0xEC), word(0xEF, 0x20), word(0xD9, 0x2C)});
    EXPECT_EQ(input->readCaptionData(0xCC00), "Hello Y,");
    EXPECT_EQ(lib.take(), (Log{"r1 FE@CC00", "r1 F@CC00", "r4 50@CC00", "r4 54@CC00", "r4 58@CC00",
                               "r4 5C@CC00", "w1 2F=0@CC00"}));
}

TEST_F(BoardInput, WordsWithoutDataOrMarkerAddNothingAndOnlyTheFirstMayBeAZeroPair) {
    const std::uint32_t zeroPair = word(0x80, 0x80);
    pciBoardWith({zeroPair, zeroPair, word(0xC1, 0xC2) & 0x7FFFFFFF,
                  (word(0xC1, 0xC2) & 0x80FFFFFF) | 0x41000000});
    EXPECT_EQ(input->readCaptionData(0xCC00), std::string(2, '\0'));

    pciBoardWith({0, word(0x80, 0x80), word(0x41, 0x42), 0});
    EXPECT_EQ(input->readCaptionData(0xCC00), "AB");
}

TEST_F(BoardInput, APollEndsEarlyWhenNoDataWaitsOrTheWordsAreNotCaptions) {
    pciBoardWith({word(0x41, 0x42)});
    lib.set(0xCC00, 0xFE, 0x02);
    EXPECT_EQ(input->readCaptionData(0xCC00), "");
    EXPECT_EQ(lib.take(), Log{"r1 FE@CC00"});

    lib.set(0xCC00, 0xFE, 0x01);
    lib.set(0xCC00, 0x0F, 0x1D);
    EXPECT_EQ(input->readCaptionData(0xCC00), "");
    EXPECT_EQ(lib.take(), (Log{"r1 FE@CC00", "r1 F@CC00", "w1 2F=0@CC00"}));
}

TEST_F(BoardInput, APollQueuesItsBytesOnlyWhenTheRingHasRoomForAWholePoll) {
    pciBoardWith({word(0x41, 0x42), word(0x43, 0x44), word(0x45, 0x46), word(0x47, 0x48)});
    rig.tavo.rawQueueOut = 1;
    rig.tavo.rawQueueIn = 1017;  // room for 7 bytes
    input->readBoard();
    EXPECT_TRUE(lib.take().empty()) << "no register touched, so the board keeps its words";
    EXPECT_EQ(rig.tavo.rawQueueIn, 1017);

    rig.tavo.rawQueueIn = 1016;  // room for 8
    input->readBoard();
    EXPECT_EQ(rig.tavo.queueRoom(), 0);
    EXPECT_EQ(rig.tavo.rawQueue[1015], 'A');
    EXPECT_EQ(rig.tavo.rawQueue[1022], 'H');
}

TEST_F(BoardInput, BoardsOfOtherKindsAreListedAndStaySilent) {
    for (std::uint8_t kind : {1, 2, 3}) {
        lib.kinds = {{0x300, kind}};
        lib.set(0x300, 0xFE, 0x01);
        load();
        lib.take();
        input->readBoard();
        EXPECT_TRUE(lib.take().empty()) << "kind " << int(kind);
        EXPECT_EQ(input->boardAddress, 0x300);
    }
    EXPECT_TRUE(rig.tavo.queueEmpty());
}

TEST_F(BoardInput, TheFirstActivationCapturesUntilStoppedAndHideFormStopsTheFlushTimer) {
    load();
    rig.console();
    input->showForm();
    EXPECT_EQ(rig.tavo.InputFilterType, 2);
    EXPECT_EQ(memory.view, input.get());
    rig.tavo.frmL21USB = input.get();
    rig.tavo.bInL21USB = true;
    rig.dispatch.postAt(rig.dispatch.nowMs() + 50, [&] { input->hideForm(); });
    input->TimerFlushTimer().setEnabled(true);
    input->Form_Activate();
    EXPECT_GE(rig.dispatch.nowMs(), 50);
    EXPECT_FALSE(input->TimerFlushTimer().enabled());
    EXPECT_EQ(memory.view, nullptr);
    input->Form_Activate();  // later activations start nothing
    const std::string raw = rig.view().raw.text();
    EXPECT_EQ(raw.find("START CAPTURE"), raw.rfind("START CAPTURE"));
}

}  // namespace
}  // namespace zelvan
