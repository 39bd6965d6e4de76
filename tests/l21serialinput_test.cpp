// The line-21 serial window over a fake port on virtual time, then recorded
// caption streams through the capture path, the SCC reader included.

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "line21/l21serialinput.h"
#include "support/fakes.h"
#include "support/fakeserialport.h"
#include "support/l21fakes.h"
#include "support/recordinglinkview.h"
#include "support/testdata.h"

namespace zelvan {
namespace {

using testing::sample;
using Captions = std::vector<std::string>;

const std::string kBlankBank = InL21().memoryText(1);

// Into roll-up, at row 15.
const std::string kRollUpStart = "\x14\x25\x14\x25\x14\x70\x14\x70";
const std::string kCR = "\x14\x2D\x14\x2D";

struct L21SerialTest : ::testing::Test, testing::Rig {
    FakeSerialPort port{dispatch};
    InL21 memory;
    testing::RecordingL21SerialView view;
    testing::CaptionRecorder display{tavo};
    std::unique_ptr<L21SerialInput> input;

    L21SerialTest() {
        console();
        display.stamp = [this] { return std::to_string(dispatch.nowMs()) + ":"; };
        input = std::make_unique<L21SerialInput>(tavo, memory, port, view);
    }
    // As the selection does it: the flag up first, then showForm.
    void select() {
        tavo.frmL21Serial = input.get();
        tavo.bInL21Serial = true;
        input->showForm();
    }
    void deliverAt(long long ms, const std::string& bytes) {
        dispatch.postAt(ms, [this, bytes] { port.deliver(bytes); });
    }
    // A recording's bytes, each timecode's drained before the next as the capture
    // loop would between two receive events; the captions the display reads.
    const Captions& play(const std::string& file, bool edmKeepsPosition = false) {
        memory.initL21();
        memory.EdmKeepsPosition = edmKeepsPosition;
        display.captions.clear();
        display.stamp = nullptr;
        tavo.frmL21Serial = input.get();
        tavo.bInL21Serial = true;
        for (const SccLine& line : sample(file).lines) {
            queue(line.bytes());
            while (!tavo.queueEmpty()) tavo.drainQueue();
        }
        return display.captions;
    }
    int markers(const char* text) const {
        const std::string& pane = shell.view.read.text();
        int n = 0;
        for (auto at = pane.find(text); at != std::string::npos; at = pane.find(text, at + 1)) ++n;
        return n;
    }
};

TEST_F(L21SerialTest, PortThatWontOpenGivesOneMessageNoCaptureAndTheWindowStays) {
    store.set("L21Port", "baud", "9600");
    memory.iChannel = 5;
    port.failNextOpen("No such file or directory");
    view.calls.clear();
    select();  // returns: no capture loop to stay in
    EXPECT_EQ(view.calls, (testing::Log{"place", "setup:1:9600,o,7,1", "channel:0", "show",
                                        "box:Couldn't open port.|No such file or directory"}));
    EXPECT_EQ(memory.iChannel, 0);
    EXPECT_EQ(markers("START CAPTURE"), 0);
    EXPECT_TRUE(view.visible);
    EXPECT_EQ(view.dm, kBlankBank);  // the panes show the memory all the same
    // The test button writes the rows on show, wherever the flips have left them.
    memory.flipMemory();
    input->Command1_Click();
    EXPECT_EQ(memory.getExternalTextL21(1) + "|" + memory.getExternalTextL21(2),
              "this is line 1|this is line 2");
    EXPECT_EQ(memory.memoryText(memory.iNM), kBlankBank);
}

// Bytes already on the ring are dropped when the port opens; what the box
// sends reaches the caption memory, the panes and the history.
TEST_F(L21SerialTest, BytesFromTheBoxReachTheCaptionMemoryThroughTheCaptureLoop) {
    queue("\x14\x2Cstale");  // an EDM and text
    dispatch.postAt(50, [this] { EXPECT_EQ(view.openCaption, kCaptionClose); });
    deliverAt(100, testing::popOnCaption("Hi").substr(0, 9));
    deliverAt(200, testing::popOnCaption("Hi").substr(9));
    dispatch.postAt(1000, [this] { input->cmdPortOpen_Click(); });
    select();  // returns when the close stops capture
    EXPECT_NE(view.dm.find("Hi"), std::string::npos);
    EXPECT_EQ(display.captions, (Captions{"200:1: 15[Hi]"}));
    EXPECT_EQ(shell.view.read.text().find("stale"), std::string::npos);
    EXPECT_EQ(markers("END CAPTURE"), 1);
}

// Roll-up text reaches the pane as it comes. The first line waits for its CR;
// from then on a pause ends a partial line 5 s after the last line ended, and
// silence changes nothing.
TEST_F(L21SerialTest, FlushTimerEndsAPartialRollUpLineAndLeavesSilenceAlone) {
    deliverAt(100, kRollUpStart + "AB");
    deliverAt(10000, kCR);
    deliverAt(11000, "CD");
    deliverAt(12000, kCR);
    deliverAt(13000, "EF");
    dispatch.postAt(11500, [&] { EXPECT_NE(view.dm.find("CD"), std::string::npos); });
    std::string memoryOnceSilent;
    dispatch.postAt(22100, [&] { memoryOnceSilent = memory.dump(); });
    dispatch.postAt(60000, [this] { input->cmdPortOpen_Click(); });
    select();
    EXPECT_EQ(display.captions,
              (Captions{"10000:3: 15[AB]", "12000:3: 15[CD]", "17000:3: 15[EF]"}));
    EXPECT_EQ(memory.dump(), memoryOnceSilent);
    // The pair is counted and shown like received bytes.
    EXPECT_NE(shell.view.read.dump().find("EF{T}-"), std::string::npos);
}

// A modal dialog holds the loop while the box sends a burst and the flush
// timer fires: the pair doesn't overwrite what waits on the ring, which has
// room for one byte, not for two.
TEST_F(L21SerialTest, FlushPairOnAFullRingLosesNoByteOfABurst) {
    std::string burst;
    for (int i = 0; i < 3000; ++i) burst += static_cast<char>('a' + i % 26);
    deliverAt(100, kRollUpStart + "AB" + kCR);  // the flush timer runs from here
    dispatch.postAt(1000, [&] {
        port.deliver(burst.substr(0, kRawQueueSize - 2));
        dispatch.advance(5000);
    });
    deliverAt(7000, burst.substr(kRawQueueSize - 2));
    dispatch.postAt(9000, [this] { input->cmdPortOpen_Click(); });
    select();
    EXPECT_NE(shell.view.raw.text().find(burst), std::string::npos);
}

// Selecting the board filter while this one captures closes the port, saves
// the section and queues no flush pair for the board filter.
TEST_F(L21SerialTest, SelectingAnotherFilterWhileCapturingEndsThisOneCleanly) {
    deliverAt(100, kRollUpStart + "AB" + kCR);
    dispatch.postAt(300, [this] { port.setBaud(4800); });
    bool closedBeforeTheNextShows = false;
    shell.onMake = [&](FilterKind, testing::FakeFilter&) {
        closedBeforeTheNextShows = !port.openState() && tavo.bStopCapture && !view.visible;
    };
    dispatch.postAt(1000, [this] { console().obIFL21USB_Click(); });
    select();
    EXPECT_TRUE(closedBeforeTheNextShows);
    EXPECT_EQ(markers("END CAPTURE"), 1);
    EXPECT_EQ(store.get("L21Port", "baud", ""), "4800");

    const std::int32_t counted = tavo.totalChars;
    dispatch.advance(30000);
    EXPECT_EQ(tavo.totalChars, counted);
}

TEST_F(L21SerialTest, RecordedRollUpLinesEndAtEachCrAndPaintOnChangesRowsInPlace) {
    const Captions& c = play("rollup-mixed-rows.scc");
    ASSERT_EQ(c.size(), 16u);
    EXPECT_EQ(c[0], "3:") << "a CR before any text ends an empty line";
    EXPECT_EQ(c[1], "3: 15[>>> HI.]");
    EXPECT_EQ(c[7] + c[8], "3: 15[\xAE\xB0\xBD]3: 15[ABCDE\xFB]");
    // four extended characters with no fallbacks between them, each
    // replacing the one before
    EXPECT_EQ(c[9], "3: 15[\xA1]");
    EXPECT_EQ(c[15], "3: 15[And wildlife.]");
    // Paint-on changes rows in place, without a style.
    EXPECT_TRUE(play("painton.scc").empty());
    EXPECT_EQ(tavo.getExternalText(14), "    Pellentesque interdum lacin.");
    EXPECT_EQ(tavo.getExternalText(15), "    Integer luctus et ligula ac.");
}

// Some captions are loaded across an EDM: by default their rest lands on row
// 1; keeping the write position puts them in viewers' order.
TEST_F(L21SerialTest, RecordedNewsBroadcastLosesNoCaptionWhateverTheEdmSetting) {
    for (const bool keep : {false, true}) {
        const Captions& c = play("news-2018-12-17-popon.scc", keep);
        ASSERT_EQ(c.size(), 1372u) << "one per EOC or EDM in the file that isn't a repeat";
        EXPECT_EQ(c[1], "1: 14[        From New York,] 15[    this is Democracy Now!]");
        EXPECT_EQ(c[3], keep ? "1: 14[     Yes, I'm supporting] 15[        Donald Trump.]"
                             : "1: 1[ I'm supporting] 14[     Yes,] 15[        Donald Trump.]");
        EXPECT_GT(std::count_if(c.begin(), c.end(), [](auto& s) { return s != "1:"; }), 1000);
    }
}

// Parity and padding are checked by the recordings above and the board tests.
TEST(SccReader, NamesBadLinesCountsFramesAndSendsAWordAFrame) {
    std::istringstream in(
        "Scenarist_SCC V1.0\n\n00:00:10:00\t9420 c845 8080\r\n00:00:10:01\t94ad\n"
        "00:00:02:00\t94zz\n00:61:00:00\t9420\n00:00:11:00\t5555\n");
    const SccRecording rec = parseScc(in);
    EXPECT_EQ(rec.errors, (std::vector<std::string>{"line 5: bad word \"94zz\"",
                                                    "line 6: bad timecode \"00:61:00:00\""}));
    std::vector<long> frames;
    for (const SccTimedWord& w : sccSchedule(rec)) frames.push_back(w.frame);
    EXPECT_EQ(frames, (std::vector<long>{0, 1, 2, 3, 30}));
    EXPECT_EQ(readSccFile("/nonexistent.scc").errors,
              std::vector<std::string>{"can't read /nonexistent.scc"});
    EXPECT_NONFATAL_FAILURE(sample("absent.scc"), "absent.scc");
    // Drop-frame labels (';' or '.') skip frames 0 and 1 of each minute but every tenth.
    const std::pair<const char*, long> cases[] = {
        {"00:59:59:29", 107999}, {"01:00:00;00", 107892}, {"00:01:00;02", 1800},
        {"00:10:00.00", 17982},  {"00:60:00:00", -1},     {"00:00:60:00", -1},
        {"00:00:00:30", -1},     {"-1:00:00:00", -1},     {"00-00:00:00", -1},
        {"00:00-00:00", -1},     {"00:00:00,00", -1},     {"00:00:00:00:", -1}};
    for (auto [timecode, frame] : cases) EXPECT_EQ(sccTimecodeFrame(timecode), frame) << timecode;
}

}  // namespace
}  // namespace zelvan
