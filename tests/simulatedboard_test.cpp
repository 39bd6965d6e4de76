// The simulated timecode board on virtual time: it answers where its settings
// say, hands out a recording's words at the pace of their timecodes with
// their parity bits, keeps every word a late poll hasn't taken, and plays
// through the board window into the decoder as the same bytes do from a
// decoder box.

#include <gtest/gtest.h>

#include <sstream>

#include "line21/l21boardinput.h"
#include "platform/simulatedboard.h"
#include "support/fakes.h"
#include "support/scriptedboard.h"
#include "support/testdata.h"

namespace zelvan {
namespace {

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
        std::uint8_t second = 0;
        for (std::uint8_t command : {0x5A, 0x2F}) board->AEC_PCTC_SEND_COMMAND(command, second, at);
    }
    // Every word waiting at `ms`, taken in polls of four as the window does.
    std::vector<std::uint32_t> wordsBy(long long ms) {
        now = ms;
        std::vector<std::uint32_t> words;
        for (std::uint8_t status = 1; status & 1;) {
            BoardRegister fe = 0xFE, take = 0x2F;
            board->AEC_PCTC_READ_1BYTE(status, fe, at);
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
    store.set("Board", "Address", "0x2A4");  // not a board address: the default stays
    EXPECT_EQ(readBoardSettings(store).address, 0xCC00);
    store.set("Board", "Address", "0x2A0");
    store.set("Board", "Loop", "True");
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
}

TEST_F(SimBoard, WordsLeaveAtTheirTimecodesPaceFromTheSetupOn) {
    now = 5000;  // the setup starts the recording, not the clock's zero
    play(scc("00:00:10;00\t9420 9420\n00:01:00;02\t942f\n"));
    EXPECT_EQ(wordsBy(5033).size(), 1u);
    EXPECT_EQ(wordsBy(5034).size(), 1u);  // frame 1 at 33.4 ms
    // 00:01:00;02 is 1500 frames on, counted drop-frame: 50050 ms.
    EXPECT_EQ(wordsBy(5000 + 50049).size(), 0u);
    EXPECT_EQ(wordsBy(5000 + 50050).size(), 1u);
}

TEST_F(SimBoard, ALatePollLosesNoWordAndParityStaysInBits7And15) {
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

// The whole recording through the board window and the capture loop gives the
// captions its bytes give straight through the decoder, each in time.
TEST(SimBoardThroughTheWindow, ARecordingReachesTheDecoderAsFromADecoderBoxAndInTime) {
    const SccRecording rec = testing::sample("popon-short.scc");
    testing::Rig rig;
    SimulatedBoard board(SimulatedBoardSettings{}, rec, [&] { return rig.dispatch.nowMs(); });
    InL21 memory;
    testing::NullBoardView view;
    L21BoardInput input(rig.tavo, memory, board, view);
    EXPECT_EQ(input.entries().back().text, "PCI-LTC/RDR (rev. A1 )  at  CC00");
    testing::CaptionRecorder viaBoard(rig.tavo);
    viaBoard.stamp = [&] { return std::to_string(rig.dispatch.nowMs()) + "ms "; };
    rig.tavo.frmOutDW = &viaBoard;
    rig.tavo.bOutDW = true;
    rig.tavo.frmL21USB = &input;
    input.showForm();
    rig.tavo.bInL21USB = true;
    rig.dispatch.postAt(sccSchedule(rec).back().frame * 1001 / 30 + 100, [&] { input.hideForm(); });
    input.Form_Activate();

    InL21 direct;
    std::vector<std::string> viaBox;
    std::string out;
    for (char c : rec.stream()) {
        const std::int16_t style = c ? direct.FilterL21(std::string(1, c), out) : 0;
        if (style == kStyleNothing) continue;
        viaBox.push_back(std::to_string(style) + ":");
        for (std::int16_t i = 1; i <= 15; ++i)
            if (const std::string row = direct.getExternalTextL21(i); !row.empty())
                viaBox.back() += " " + std::to_string(i) + "[" + row + "]";
    }
    ASSERT_EQ(viaBoard.captions.size(), viaBox.size());
    for (std::size_t i = 0; i < viaBox.size(); ++i)
        EXPECT_NE(viaBoard.captions[i].find("ms " + viaBox[i]), std::string::npos) << i;
    // The first caption flips into view with its 21st word, 667 ms in, and the
    // next line erases it 2002 ms in; a poll comes every few ms.
    ASSERT_GE(viaBoard.captions.size(), 3u);
    EXPECT_NEAR(std::stoll(viaBoard.captions[1]), 667 + 2, 3) << viaBoard.captions[1];
    EXPECT_NEAR(std::stoll(viaBoard.captions[2]), 2002 + 2, 3);
}

}  // namespace
}  // namespace zelvan
