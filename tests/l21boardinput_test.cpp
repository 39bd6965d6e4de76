// The timecode board window over a scripted board library, then the simulated
// board on virtual time, register by register.

#include <gtest/gtest.h>

#include <sstream>

#include "line21/l21boardinput.h"
#include "platform/simulatedboard.h"
#include "support/fakes.h"
#include "support/scriptedboard.h"
#include "support/testdata.h"

namespace zelvan {
namespace {

using testing::Log;

// Two caption bytes with their parity bits, in a word with data and the marker.
constexpr std::uint32_t word(std::uint8_t first, std::uint8_t second) {
    return 0xC0000000u | static_cast<std::uint32_t>(second) << 8 | first;
}

struct BoardInput : ::testing::Test, testing::Rig {
    InL21 memory;
    testing::ScriptedBoard lib;
    testing::PanesBoardView view;
    std::unique_ptr<L21BoardInput> input;

    void load() {
        input = std::make_unique<L21BoardInput>(tavo, memory, lib, view);
        lib.log.clear();
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

// A window hidden or gone lets go of the memory only if it shows it.
TEST_F(BoardInput, OnlyTheWindowShowingTheMemoryLetsGoOfIt) {
    load();
    input->showForm();
    const auto shown = std::move(input);
    load();
    input->hideForm();
    input.reset();
    EXPECT_EQ(memory.view, shown.get());
    shown->hideForm();
    EXPECT_EQ(memory.view, nullptr);
}

TEST_F(BoardInput, BoardsAreFoundInProbingOrderAndNamedByKindOrByWhatTheyReport) {
    lib.kinds = {{0x1000, 1}, {0x220, 3}, {0xCC00, 4}, {0xDD00, 4}, {0x380, 7}};
    for (BoardRegister r = 0; r < 5; ++r) lib.regs[{0x220, 0x3E0 + r}] = "RDRB2"[r];
    lib.regs[{0x220, 0x3EF}] = 0x93;
    for (auto [reg, v] : {std::pair{0x08, 0xA0}, {0x06, 'A'}, {0x07, '1'}})
        lib.regs[{0xCC00, reg}] = v;  // model 1010, revision A1
    lib.regs[{0xDD00, 0x08}] = 0x60;  // a model no table holds: the name read before stays
    load();
    EXPECT_EQ(view.boards,
              (Log{"No Board Currently Selected", "PC-LTC/IOR at 1000",
                   "PCI-VLTC/GeN (rev. A1 )  at  CC00", "PCI-VLTC/GeN (rev. A1 )  at  DD00",
                   "PC-VITC/RDR (rev. B2 )  at  220"}));
    // The first found is in use, whatever its kind; a kind 1 board stays silent.
    EXPECT_EQ(input->boardAddress, 0x1000);
    lib.regs[{0x1000, 0xFE}] = 1;
    input->readBoard();
    EXPECT_TRUE(lib.log.empty());
    // Choosing the first entry by hand leaves the board in use.
    input->cboBrdLst_Click(2);
    input->cboBrdLst_Click(0);
    EXPECT_EQ(input->boardAddress, 0xCC00);
    EXPECT_EQ(input->boardKind, 4);
}

TEST_F(BoardInput, APciBoardIsSetUpAtLoadWhenItAsks) {
    lib.kinds = {{0xCC00, 4}};
    lib.regs[{0xCC00, 0x08}] = 0x14;  // model 1, setup to do
    lib.regs[{0xCC00, 0x2E}] = 0x05;
    input = std::make_unique<L21BoardInput>(tavo, memory, lib, view);
    const auto setup = std::find(lib.log.begin(), lib.log.end(), "info") + 1;
    EXPECT_EQ(Log(setup, lib.log.end()),
              (Log{"r1 8@CC00", "r1 2E@CC00", "w1 2E=0@CC00", "w4 20=80808080@CC00",
                   "cmd 5A,0@CC00", "cmd 2F,0@CC00", "w1 2E=45@CC00"}));
    lib.regs[{0xCC00, 0x08}] = 0x10;
    load();
    input->initUSBL21();
    EXPECT_EQ(lib.log, Log{"r1 8@CC00"});
}

TEST_F(BoardInput, APollTakesValidWordsInOrderWithoutParityWhenTheRingHasRoom) {
    pciBoardWith({word(0xC8, 0xE5), word(0xEC, 0xEC), word(0xEF, 0x20), word(0xD9, 0x2C)});
    EXPECT_EQ(input->readCaptionData(0xCC00), "Hello Y,");
    EXPECT_EQ(lib.log.back(), "w1 2F=0@CC00") << "the poll closed after its words";

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

    // Its bytes are queued only when the ring has room for a whole poll.
    pciBoardWith({word(0x41, 0x42), word(0x43, 0x44), word(0x45, 0x46), word(0x47, 0x48)});
    tavo.rawQueueIn = 1017;  // room for 7 bytes
    input->readBoard();
    EXPECT_TRUE(lib.log.empty()) << "no register touched, so the board keeps its words";
    tavo.rawQueueIn = 1016;  // room for 8
    input->readBoard();
    EXPECT_EQ(tavo.queueRoom(), 0);
    EXPECT_EQ(tavo.rawQueue[1015], 'A');
    EXPECT_EQ(tavo.rawQueue[1022], 'H');
}

// The test buttons change the memory only; "Show" redraws a pane.
TEST_F(BoardInput, TestButtonsShowAndTheFlushTimerOfTheWindowInUse) {
    load();
    using I = L21BoardInput;
    const std::pair<void (I::*)(), const char*> steps[] = {
        {&I::cmdFillDM_Click, "1 "}, {&I::cmdFillNM_Click, "12"}, {&I::cmdFlip_Click, "21"},
        {&I::cmdEDM_Click, " 1"},    {&I::cmdENM_Click, "  "},    {&I::cmdFillDM_Click, "2 "},
        {&I::cmdInit_Click, "  "},   {&I::cmdFillDM_Click, "1 "}};
    for (auto [press, panes] : steps) {
        (input.get()->*press)();
        input->cmdShowDM_Click();
        input->cmdShowNM_Click();
        EXPECT_EQ(std::string({view.dm.at(0), view.nm.at(0)}), panes);
    }
    // A CR arms the flush timer of the window in use: 5 s on it queues a CR pair.
    // Hiding the window stops the timer and the capture.
    input->showForm();
    memory.restartFlushTimer();
    dispatch.advance(5000);
    EXPECT_EQ(tavo.dequeueByte(), "\x14");
    EXPECT_EQ(tavo.dequeueByte(), "\x2D");
    input->hideForm();
    dispatch.advance(10000);
    EXPECT_TRUE(tavo.queueEmpty() && tavo.bStopCapture);
}

SccRecording scc(const std::string& lines) {
    std::istringstream in("Scenarist_SCC V1.0\n\n" + lines);
    return parseScc(in);
}

struct SimBoard : ::testing::Test {
    long long now = 0;
    SimulatedBoardSettings settings;
    std::unique_ptr<SimulatedBoard> board;
    BoardAddress at = 0xCC00;

    // The board set up for output at `now`, as the board window does at load.
    void play(const SccRecording& rec) {
        board = std::make_unique<SimulatedBoard>(settings, rec, [this] { return now; });
        setUp();
    }
    // The setup's first command comes a moment before the one that starts output.
    void setUp() {
        std::uint8_t second = 0, first = 0x5A, start = 0x2F;
        now -= 50;
        board->AEC_PCTC_SEND_COMMAND(first, second, at);
        now += 50;
        board->AEC_PCTC_SEND_COMMAND(start, second, at);
    }
    std::uint8_t read1(BoardRegister reg) {
        std::uint8_t v = 0;
        board->AEC_PCTC_READ_1BYTE(v, reg, at);
        return v;
    }
    // Every word waiting at `ms`, taken in polls of four as the window does.
    std::vector<std::uint32_t> wordsBy(long long ms) {
        now = ms;
        std::vector<std::uint32_t> words;
        while (read1(0xFE) & 1) {
            BoardRegister take = 0x2F;
            for (BoardRegister reg : {0x50, 0x54, 0x58, 0x5C}) {
                std::uint32_t w = 0;
                board->AEC_PCTC_READ_4BYTES(w, reg, at);
                if (w & 0x80000000u) words.push_back(w);
            }
            std::uint8_t zero = 0;
            board->AEC_PCTC_WRITE_1BYTE(zero, take, at);
        }
        return words;
    }
};

TEST_F(SimBoard, ItAnswersOnlyWithAReadableRecordingAndAtTheAddressSet) {
    MemorySettingsStore store;
    // Only a probed address in C hexadecimal moves the board from its default.
    for (const char* text : {"0x2A4", "0y2A0", "1x2A0", "0x2A0z"}) {
        store.set("Board", "Address", text);
        EXPECT_EQ(readBoardSettings(store).address, 0xCC00) << text;
    }
    for (auto [key, text] : {std::pair{"Address", "0X2A0"}, {"Loop", "True"}, {"Model", "3"}})
        store.set("Board", key, text);
    settings = readBoardSettings(store);
    EXPECT_TRUE(settings.loop);
    const std::pair<const char*, int> cases[] = {{"/nonexistent.scc", 0},
                                                 {ZELVAN_SAMPLES_DIR "/README.md", 0},
                                                 {ZELVAN_SAMPLES_DIR "/popon-short.scc", 0x2A0}};
    for (auto [path, where] : cases) {
        settings.recording = path;
        SimulatedBoard b(settings, [] { return 0LL; });
        int found = 0;
        for (BoardAddress a : kBoardAddresses) found += b.AEC_PCTC_CHECK_BOARD(a) ? a : 0;
        EXPECT_EQ(found, where) << path;
    }
    board = std::make_unique<SimulatedBoard>(settings, [] { return 0LL; });
    at = 0x2A0;
    EXPECT_EQ(read1(0xFE), 0) << "no word before the setup";
    EXPECT_EQ(read1(0x08), 0x34) << "model 3, its setup to do";
    EXPECT_EQ(std::string({static_cast<char>(read1(0x06)), static_cast<char>(read1(0x07))}), "A1");
}

TEST_F(SimBoard, WordsLeaveAtTheirTimecodesPaceAndALatePollLosesNone) {
    now = 5000;  // the setup starts the recording, not the clock's zero
    play(scc("00:00:10;00\t9420 9420\n00:10:00;00\t942f\n"));
    EXPECT_EQ(wordsBy(5000).size(), 1u);
    EXPECT_EQ(wordsBy(5034).size(), 1u);  // frame 1 at 33.4 ms
    setUp();  // as the next selection of the filter does: the recording runs on
    // 00:10:00;00 is 17682 frames on, counted drop-frame: 589989.4 ms.
    EXPECT_EQ(wordsBy(5000 + 589989).size(), 0u);
    EXPECT_EQ(wordsBy(5000 + 589990).size(), 1u);

    // A late poll loses no word; parity stays in bits 7 and 15.
    now = 0;
    const SccRecording rec = testing::sample("popon-short.scc");
    play(rec);
    std::vector<std::uint32_t> want;
    for (const SccTimedWord& w : sccSchedule(rec))
        want.push_back(0xC0000000u | (w.word & 0xFFu) << 8 | w.word >> 8);
    EXPECT_EQ(wordsBy(10 * 60 * 1000), want);
    EXPECT_EQ(want.front(), 0xC000AE94u) << "94ae, as broadcast";

    settings.loop = true;  // a loop starts over a frame after the last word
    now = 0;
    play(scc("00:00:00:00\t9420 942f\n"));
    EXPECT_EQ(wordsBy(10 * 1001).size(), 301u);
}

}  // namespace
}  // namespace zelvan
