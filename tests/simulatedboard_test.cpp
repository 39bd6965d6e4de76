// The simulated timecode board on virtual time: it answers where its settings
// say, hands out a recording's words at the pace of their timecodes with
// their parity bits, keeps every word a late poll hasn't taken, and plays
// through the board window into the decoder exactly as the same bytes do from
// a decoder box.

#include <gtest/gtest.h>

#include <sstream>

#include "line21/l21boardinput.h"
#include "platform/simulatedboard.h"
#include "support/fakes.h"
#include "support/testdata.h"

namespace zelvan {
namespace {

SccRecording scc(const std::string& text) {
    std::istringstream in("Scenarist_SCC V1.0\n\n" + text);
    return parseScc(in);
}

struct SimBoard : ::testing::Test {
    long long now = 0;
    SimulatedBoardSettings settings;
    std::unique_ptr<SimulatedBoard> board;
    BoardAddress at = 0xCC00;

    void play(const SccRecording& rec) {
        board = std::make_unique<SimulatedBoard>(settings, rec, [this] { return now; });
        std::uint8_t second = 0;
        for (std::uint8_t command : {0x5A, 0x2F}) board->AEC_PCTC_SEND_COMMAND(command, second, at);
    }
    std::uint8_t read1(BoardRegister reg) {
        std::uint8_t v = 0;
        board->AEC_PCTC_READ_1BYTE(v, reg, at);
        return v;
    }
    // One poll as the board window makes it: the words with data, in order.
    std::vector<std::uint32_t> poll() {
        std::vector<std::uint32_t> words;
        if (!(read1(0xFE) & 1) || read1(0x0F) != 0x1E) return words;
        for (BoardRegister reg : {0x50, 0x54, 0x58, 0x5C}) {
            std::uint32_t w = 0;
            board->AEC_PCTC_READ_4BYTES(w, reg, at);
            if (w & 0x80000000u) words.push_back(w);
        }
        std::uint8_t zero = 0;
        BoardRegister take = 0x2F;
        board->AEC_PCTC_WRITE_1BYTE(zero, take, at);
        return words;
    }
    std::size_t wordsBy(long long ms) {
        now = ms;
        std::size_t n = 0;
        for (auto words = poll(); !words.empty(); words = poll()) n += words.size();
        return n;
    }
};

TEST_F(SimBoard, SettingsPlaceTheBoardAndABadValueTakesItsDefault) {
    MemorySettingsStore store;
    EXPECT_EQ(readBoardSettings(store).address, 0xCC00);
    EXPECT_EQ(readBoardSettings(store).model, 1);
    EXPECT_FALSE(readBoardSettings(store).loop);
    store.set("Board", "Address", "0x2A0");
    store.set("Board", "Model", "10");
    store.set("Board", "Loop", "True");
    SimulatedBoardSettings s = readBoardSettings(store);
    EXPECT_EQ(s.address, 0x2A0);
    EXPECT_EQ(s.model, 10);
    EXPECT_TRUE(s.loop);
    for (const char* bad : {"2A0", "0x2A4", "0xZZ"}) {
        store.set("Board", "Address", bad);
        store.set("Board", "Model", "16");
        s = readBoardSettings(store);
        EXPECT_EQ(s.address, 0xCC00) << bad;
        EXPECT_EQ(s.model, 1);
    }
}

TEST_F(SimBoard, WithoutAReadableRecordingNoBoardAnswersAnywhere) {
    for (const char* path : {"", "/nonexistent/board.scc", ZELVAN_SAMPLES_DIR "/README.md"}) {
        settings.recording = path;
        SimulatedBoard b(settings, [] { return 0LL; });
        for (BoardAddress a : kBoardAddresses) EXPECT_EQ(b.AEC_PCTC_CHECK_BOARD(a), 0) << path;
    }
    settings.recording = testing::samplePath("popon-short.scc");
    SimulatedBoard b(settings, [] { return 0LL; });
    for (BoardAddress a : kBoardAddresses)
        EXPECT_EQ(b.AEC_PCTC_CHECK_BOARD(a), a == 0xCC00 ? 4 : 0);
}

TEST_F(SimBoard, WordsLeaveAtTheirTimecodesPaceFromTheSetupOn) {
    now = 5000;  // the clock's start means nothing: the setup starts the recording
    play(scc("00:00:10;00\t9420 9420\n00:00:11;00\t942f\n00:01:00;02\t9420\n"));
    EXPECT_EQ(wordsBy(5000), 1u);
    EXPECT_EQ(wordsBy(5033), 0u);
    EXPECT_EQ(wordsBy(5034), 1u);  // frame 1 at 33.4 ms
    EXPECT_EQ(wordsBy(5000 + 1000), 0u);
    EXPECT_EQ(wordsBy(5000 + 1001), 1u);  // frame 30 at 1001 ms
    // 00:01:00;02 is 1500 frames after 00:00:10;00 by the drop-frame count.
    EXPECT_EQ(wordsBy(5000 + 50049), 0u);
    EXPECT_EQ(wordsBy(5000 + 50050), 1u);
}

TEST_F(SimBoard, NothingWaitsBeforeTheSetupAndAStoppedRecordingStaysSilent) {
    board = std::make_unique<SimulatedBoard>(settings, scc("00:00:00:00\t9420\n"),
                                             [this] { return now; });
    now = 10000;
    EXPECT_TRUE(poll().empty());
    EXPECT_FALSE(board->playing());
}

TEST_F(SimBoard, ALatePollLosesNoWordAndParityStaysInBits7And15) {
    const SccRecording rec = testing::sample("popon-short.scc");
    play(rec);
    now = 10 * 60 * 1000;  // long after the last word
    std::vector<std::uint32_t> got;
    for (auto words = poll(); !words.empty(); words = poll()) {
        EXPECT_LE(words.size(), 4u);
        got.insert(got.end(), words.begin(), words.end());
    }
    std::vector<std::uint32_t> want;
    for (const SccTimedWord& w : sccSchedule(rec))
        want.push_back(0xC0000000u | (w.word & 0xFFu) << 8 | w.word >> 8);
    EXPECT_EQ(got, want);
    EXPECT_EQ(got.front(), 0xC000AE94u) << "94ae: parity bits as broadcast";
}

TEST_F(SimBoard, ALoopStartsOverAfterTheLastWord) {
    settings.loop = true;
    play(scc("00:00:00:00\t9420 942f\n"));
    EXPECT_EQ(wordsBy(0), 1u);
    EXPECT_EQ(wordsBy(34), 1u);
    EXPECT_EQ(wordsBy(67), 1u);  // the next pass, a frame after the last word
    EXPECT_EQ(wordsBy(10 * 1001), 298u) << "frames 3 to 300, none dropped";
}

// The board window over the simulated board: listed by its model, and a whole
// recording, played on virtual time through the capture loop, gives the
// captions that its bytes give straight through the decoder, each when its
// timecode says.
struct NullView : L21BoardView {
    void placeWindow() override {}
    void showWindow() override {}
    void hideWindow() override {}
    void addBoardEntry(const std::string&) override {}
    void showBoardSelection(int) override {}
    void setDMText(const std::string&) override {}
    void setNMText(const std::string&) override {}
    void showChannel(std::int16_t) override {}
};

TEST(SimBoardThroughTheWindow, ARecordingReachesTheDecoderAsFromADecoderBoxAndInTime) {
    const SccRecording rec = testing::sample("popon-short.scc");
    testing::Rig rig;
    SimulatedBoard board(SimulatedBoardSettings{}, rec, [&] { return rig.dispatch.nowMs(); });
    InL21 memory;
    NullView view;
    L21BoardInput input(rig.tavo, memory, board, view);
    EXPECT_EQ(input.entries().back().text, "PCI-LTC/RDR (rev. A1 )  at  CC00");

    testing::CaptionRecorder viaBoard(rig.tavo);
    viaBoard.stamp = [&] { return std::to_string(rig.dispatch.nowMs()) + "ms "; };
    rig.tavo.frmOutDW = &viaBoard;
    rig.tavo.bOutDW = true;
    rig.tavo.frmL21USB = &input;
    input.showForm();
    rig.tavo.bInL21USB = true;
    const long long end = sccSchedule(rec).back().frame * 1001 / 30 + 1000;
    rig.dispatch.postAt(end, [&] { input.hideForm(); });
    input.Form_Activate();

    // The same bytes straight through the decoder, as a decoder box gives them.
    InL21 direct;
    std::vector<std::string> viaBox;
    std::string out;
    for (char c : rec.stream()) {
        if (c == '\0') continue;  // the pipeline drops nulls before the filter
        const std::int16_t style = direct.FilterL21(std::string(1, c), out);
        if (style == kStyleNothing) continue;
        std::string caption = std::to_string(style) + ":";
        for (std::int16_t i = 1; i <= 15; ++i)
            if (const std::string row = direct.getExternalTextL21(i); !row.empty())
                caption += " " + std::to_string(i) + "[" + row + "]";
        viaBox.push_back(caption);
    }
    ASSERT_EQ(viaBoard.captions.size(), viaBox.size());
    for (std::size_t i = 0; i < viaBox.size(); ++i)
        EXPECT_NE(viaBoard.captions[i].find("ms " + viaBox[i]), std::string::npos) << i;

    // The first caption flips into view with its 21st word, 667 ms in, and is
    // erased by the next line, 2002 ms in; polls are at most 4 ms apart.
    std::size_t shown = 0;
    while (shown < viaBoard.captions.size() &&
           viaBoard.captions[shown].find("horn") == std::string::npos)
        ++shown;
    ASSERT_LT(shown + 1, viaBoard.captions.size()) << ::testing::PrintToString(viaBoard.captions);
    EXPECT_NEAR(std::stoll(viaBoard.captions[shown]), 667 + 2, 3);
    EXPECT_NEAR(std::stoll(viaBoard.captions[shown + 1]), 2002 + 2, 3);
}

}  // namespace
}  // namespace zelvan
