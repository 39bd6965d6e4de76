// Recorded caption streams through the whole capture path: rawQueue,
// drainQueue, the line-21 filter, and the rows the display output reads at
// each style 1 and 3.

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "line21/l21filter.h"
#include "support/fakes.h"
#include "support/testdata.h"

namespace zelvan {
namespace {

using testing::Rig;
using testing::sample;

struct Player {
    Rig rig;
    InL21 memory;
    L21Filter filter{memory};
    testing::CaptionRecorder display{rig.tavo};

    explicit Player(bool edmKeepsPosition = false) {
        memory.EdmKeepsPosition = edmKeepsPosition;
        rig.tavo.frmL21Serial = &filter;
        rig.tavo.bInL21Serial = true;
        rig.tavo.frmOutDW = &display;
        rig.tavo.bOutDW = true;
    }

    // Each timecode's bytes go on the ring and are drained before the next,
    // as the capture loop would between two receive events.
    void play(const std::string& file) {
        for (const SccLine& line : sample(file).lines) {
            rig.queue(line.bytes());
            while (!rig.tavo.queueEmpty()) rig.tavo.drainQueue();
        }
    }
};

struct RecordedStream : ::testing::Test, Player {};

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
    const std::string stream = sample("painton.scc").stream();
    EXPECT_EQ(display.calls, std::count_if(stream.begin(), stream.end(), [](char b) { return b; }))
        << "every byte but the padding reaches the display output";
}

// Counts the EOC and EDM pairs that aren't repeats straight from the file's
// pairs: padding doesn't break a repeat, a text pair does.
long countFlipsAndErases(const std::string& file) {
    const std::string stream = sample(file).stream();
    long count = 0;
    std::string previous;
    for (std::size_t i = 0; i + 1 < stream.size(); i += 2) {
        const std::string pair = stream.substr(i, 2);
        if (pair == std::string(2, '\0')) continue;
        const bool control = pair[0] >= 0x10 && pair[0] <= 0x1F;
        if (control && (pair == "\x14\x2C" || pair == "\x14\x2F") && pair != previous) ++count;
        previous = control ? pair : std::string();
    }
    return count;
}

TEST_F(RecordedStream, NewsBroadcastLosesNoCaption) {
    play("news-2018-12-17-popon.scc");
    const Captions& c = display.captions;
    ASSERT_EQ(static_cast<long>(c.size()), countFlipsAndErases("news-2018-12-17-popon.scc"));
    EXPECT_EQ(c[0], "1:");
    EXPECT_EQ(c[1], "1: 14[        From New York,] 15[    this is Democracy Now!]");
    // An EDM in the middle of loading sends the rest of the caption to row 1.
    EXPECT_EQ(c[3], "1: 1[ I'm supporting] 14[     Yes,] 15[        Donald Trump.]");
    EXPECT_EQ(c[4], "1: 14[I'm doing so as enthusiastically] 15[          as I can,]");
    EXPECT_NE(std::find(c.begin(), c.end(), "1: 15[     Zinke, the possible]"), c.end());
    const long shown = std::count_if(c.begin(), c.end(), [](auto& s) { return s != "1:"; });
    EXPECT_GT(shown, 1000);
}

// Keeping the write position at an EDM mends the captions a broadcaster loads
// across one.
TEST(EdmKeepsPosition, PutsTheNewsInViewersOrder) {
    Player news(true);
    news.play("news-2018-12-17-popon.scc");
    const Captions& c = news.display.captions;
    ASSERT_EQ(static_cast<long>(c.size()), countFlipsAndErases("news-2018-12-17-popon.scc"));
    EXPECT_EQ(c[3], "1: 14[     Yes, I'm supporting] 15[        Donald Trump.]");
}

// Parity and padding are checked by the recordings above and the board tests.
TEST(SccReader, NamesBadLinesAndSendsAWordAFrameDelayingWhatOverlaps) {
    std::istringstream in(
        "Scenarist_SCC V1.0\n\n00:00:10:00\t9420 c845 8080\r\n00:00:10:01\t94ad\n"
        "00:00:02:00\t94zz\n00:61:00:00\t9420\n00:00:11:00\t5555\n");
    const SccRecording rec = parseScc(in);
    EXPECT_EQ(rec.errors, (std::vector<std::string>{"line 5: bad word \"94zz\"",
                                                    "line 6: bad timecode \"00:61:00:00\""}));
    std::vector<long> frames;
    for (const SccTimedWord& w : sccSchedule(rec)) frames.push_back(w.frame);
    EXPECT_EQ(frames, (std::vector<long>{0, 1, 2, 3, 30}));
    EXPECT_FALSE(readSccFile("/nonexistent.scc").header);
}

}  // namespace
}  // namespace zelvan
