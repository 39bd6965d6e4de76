// Recorded caption streams through the whole capture path: rawQueue,
// drainQueue, the line-21 filter, and the rows the display output reads at
// each style 1 and 3.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>

#include "line21/l21filter.h"
#include "support/fakes.h"
#include "support/sccreader.h"

namespace zelvan {
namespace {

using testing::readScc;
using testing::Rig;

// A display output that, like the real one, pulls the rows through the row
// readers, and keeps what it sees at each style 1 and 3.
class CaptionRecorder : public DisplayOutput {
  public:
    explicit CaptionRecorder(Tavo& tavo) : m_tavo(tavo) {}
    void showForm() override {}
    void hideForm() override {}
    void showStartupBarker(bool) override {}
    void DWErase() override {}
    void doInput(std::int16_t style, const std::string&) override {
        ++calls;
        if (style == kStyleNothing) return;
        std::string caption = std::to_string(style) + ":";
        for (std::int16_t i = 1; i <= 15; ++i) {
            const std::string row = m_tavo.getExternalText(i);
            if (!row.empty()) caption += " " + std::to_string(i) + "[" + row + "]";
        }
        captions.push_back(caption);
    }

    std::vector<std::string> captions;
    long calls = 0;

  private:
    Tavo& m_tavo;
};

struct RecordedStream : ::testing::Test {
    Rig rig;
    InL21 memory;
    L21Filter filter{memory};
    CaptionRecorder display{rig.tavo};

    void SetUp() override {
        rig.tavo.frmL21Serial = &filter;
        rig.tavo.bInL21Serial = true;
        rig.tavo.frmOutDW = &display;
        rig.tavo.bOutDW = true;
    }

    // Each timecode's bytes go on the ring and are drained before the next,
    // as the capture loop would between two receive events.
    void play(const std::string& file) {
        const auto lines = readScc(std::string(ZELVAN_SAMPLES_DIR) + "/" + file);
        ASSERT_FALSE(lines.empty()) << file;
        for (const auto& line : lines) {
            rig.queue(line.bytes);
            while (!rig.tavo.queueEmpty()) rig.tavo.drainQueue();
        }
    }
};

using Captions = std::vector<std::string>;

TEST_F(RecordedStream, PopOnCaptionsFlipIntoViewAndEdmBlanksThem) {
    play("popon-short.scc");
    // The first caption starts at column 23 (indent 20, tab 2) and runs past
    // column 32, where its tail piles up. Special characters: registered
    // sign, one half.
    EXPECT_EQ(display.captions, (Captions{
                                    "1:",
                                    "1: 15[                      ( horn ho)]",
                                    "1:",
                                    "1:",
                                    "1: 15[    HEY, THE\xAE"
                                    "E.]",
                                    "1:",
                                    "1: 14[     Test \xBD Caption] 15[     Test  test  Captions]",
                                    "1:",
                                }));
}

TEST_F(RecordedStream, RollUpLinesEndAtEachCrOnRow15) {
    play("rollup-mixed-rows.scc");
    EXPECT_EQ(display.captions, (Captions{
                                    "3:",  // a CR before any text ends an empty line
                                    "3: 15[>>> HI.]",
                                    "3: 15[I'M KEVIN CUNNING AND AT]",
                                    "3: 15[INVESTOR'S BANK WE BELIEVE IN]",
                                    "3: 15[HELPING THE LOCAL NEIGHBORHOODS]",
                                    "3: 15[AND  IMPROVING  THE LIVES OF ALL]",
                                    "3: 15[WE SERVE.]",
                                    "3: 15[\xAE\xB0\xBD]",
                                    "3: 15[ABCDE\xFB]",
                                    // four extended characters with no fallbacks
                                    // between them, each replacing the one before
                                    "3: 15[\xA1]",
                                    "3: 15[WHERE YOU'RE STANDING NOW,]",
                                    "3: 15[LOOKING OUT THERE, THAT'S ALL]",
                                    "3: 15[THE CROWD.]",
                                    "3: 15[>> IT WAS GOOD TO BE IN THE]",
                                    "3: 15[And restore Iowa's land, water]",
                                    "3: 15[And wildlife.]",
                                }));
    EXPECT_EQ(memory.iMode, InL21::kRollUp);
}

TEST_F(RecordedStream, PaintOnChangesRowsInPlaceWithoutAStyle) {
    play("painton.scc");
    EXPECT_TRUE(display.captions.empty());
    EXPECT_EQ(memory.iMode, InL21::kPaintOn);
    EXPECT_EQ(rig.tavo.getExternalText(14), "    Pellentesque interdum lacin.");
    EXPECT_EQ(rig.tavo.getExternalText(15), "    Integer luctus et ligula ac.");
    const std::string stream =
        testing::readSccStream(std::string(ZELVAN_SAMPLES_DIR) + "/painton.scc");
    EXPECT_EQ(display.calls, std::count_if(stream.begin(), stream.end(), [](char b) { return b; }))
        << "every byte but the padding reaches the display output";
}

// Counts the EOC and EDM pairs that aren't repeats straight from the file's
// words: padding doesn't break a repeat, a text word does.
long countFlipsAndErases(const std::string& file) {
    long count = 0;
    std::string previous;
    std::ifstream in(file);
    std::string word;
    while (in >> word) {
        if (word.size() != 4 || word == "8080" ||
            !std::all_of(word.begin(), word.end(),
                         [](unsigned char ch) { return std::isxdigit(ch) != 0; }))
            continue;
        const int first = std::stoi(word.substr(0, 2), nullptr, 16) & 0x7F;
        if (first < 0x10 || first > 0x1F) {
            previous.clear();
            continue;
        }
        if ((word == "942c" || word == "942f") && word != previous) ++count;
        previous = word;
    }
    return count;
}

TEST_F(RecordedStream, NewsBroadcastLosesNoCaption) {
    play("news-2018-12-17-popon.scc");
    const Captions& c = display.captions;
    ASSERT_EQ(static_cast<long>(c.size()),
              countFlipsAndErases(std::string(ZELVAN_SAMPLES_DIR) + "/news-2018-12-17-popon.scc"));
    EXPECT_EQ(c[0], "1:");
    EXPECT_EQ(c[1], "1: 14[        From New York,] 15[    this is Democracy Now!]");
    // An EDM in the middle of loading sends the rest of the caption to row 1.
    EXPECT_EQ(c[3], "1: 1[ I'm supporting] 14[     Yes,] 15[        Donald Trump.]");
    EXPECT_EQ(c[4], "1: 14[I'm doing so as enthusiastically] 15[          as I can,]");
    EXPECT_NE(std::find(c.begin(), c.end(), "1: 15[     Zinke, the possible]"), c.end());
    const long shown = std::count_if(c.begin(), c.end(), [](auto& s) { return s != "1:"; });
    EXPECT_GT(shown, 1000);
}

TEST(SccReader, StripsParityAndKeepsPaddingAsNulls) {
    EXPECT_EQ(testing::sccWordsToBytes("9420 c845 8080 zz 12345"),
              std::string("\x14\x20\x48\x45\x00\x00", 6));
    EXPECT_EQ(testing::sccFrame("00:01:02;03"), (62 * 30) + 3);
    EXPECT_TRUE(readScc("/nonexistent.scc").empty());
}

}  // namespace
}  // namespace zelvan
