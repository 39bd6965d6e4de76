// The digital video window over a scripted source on virtual time: the
// caption data of each picture reaches the decoder as a decoder box on the
// chosen field would deliver it, and the source's troubles reach the operator.

#include <gtest/gtest.h>

#include "line21/ccdata.h"
#include "line21/l21videoinput.h"
#include "support/fakes.h"
#include "support/scriptedmedia.h"

namespace zelvan {
namespace {

using K = MediaEvent::Kind;

// The triples of one picture: field 1 and field 2.
std::string ccData(int field, const std::string& pair) {
    const std::string padding = "\x80\x80";
    return std::string(1, '\xFC') + (field == 1 ? pair : padding) + '\xFD' +
           (field == 2 ? pair : padding);
}

TEST(FieldPairs, TakeTheChosenFieldStripParityAndDropPaddingAndOtherServices) {
    struct Case {
        std::string data;
        int field;
        std::string pairs;
    };
    const Case cases[] = {
        {"\xFC\x94\x2C\xFD\x15\xAD", 1, "\x14\x2C"},
        {"\xFC\x94\x2C\xFD\x15\xAD", 2, "\x15\x2D"},
        {"\xF8\x94\x2C\xFC\xC1\x80", 1, std::string("\x41\x00", 2)},  // not valid; one null kept
        {"\xFC\x80\x80\xFC\x00\x00", 1, ""},                          // padding, with parity or not
        {"\xFE\x94\x2C\xFF\x94\x2C", 1, ""},                          // the digital service
        {"\xFC\x94\x2C\xFC\x94", 1, "\x14\x2C"},                      // a partial triple
    };
    for (const Case& c : cases)
        EXPECT_EQ(line21::fieldPairs(reinterpret_cast<const std::uint8_t*>(c.data.data()),
                                     c.data.size(), c.field),
                  c.pairs)
            << ::testing::PrintToString(c.data) << " field " << c.field;
}

struct L21VideoTest : ::testing::Test, testing::Rig {
    InL21 memory;
    testing::ScriptedMedia media;
    testing::RecordingVideoView view;
    L21VideoInput input{tavo, memory, media, view};

    L21VideoTest() {
        console();
        tavo.frmL21Video = &input;
        tavo.bInL21Video = true;
    }
    void sendAt(long long ms, MediaEvent e) {
        dispatch.postAt(ms, [this, e] { media.send(e); });
    }
};

// What the operator is told as the source plays, with Loop as chosen: a
// source that won't open in one box with FFmpeg's reason, ten seconds of
// media without captions once, the end of a file unless it loops, a stall.
TEST_F(L21VideoTest, TheOperatorIsToldOfFailureSilenceTheEndAndAStall) {
    struct Case {
        std::vector<MediaEvent> events;
        bool loop;
        std::vector<std::string> notices;  // after "Opening..." and the open's ""
        std::string box = "";
    };
    const std::string pair = ccData(1, "AB");
    const Case cases[] = {
        {{{K::Position, "", "", 2000}, {K::Position, "", "", 11999}}, false, {}},
        {{{K::Position, "", "", 2000}, {K::Position, "", "", 12000}, {K::Position, "", "", 30000}},
         false,
         {kNoCaptionsYet}},
        {{{K::CaptionData, "", pair, 500}, {K::Position, "", "", 20000}}, false, {}},
        {{{K::Ended}}, false, {kEndOfFile}},
        {{{K::Ended}}, true, {}},
        {{{K::Stalled, "timed out"}, {K::Resumed}}, false, {kStalled, ""}},
        {{{K::Failed, "No such file"}}, false, {""}, "Couldn't open source.|No such file\nshow.ts"},
    };
    for (const Case& c : cases) {
        input.chkLoop_Click(c.loop);
        input.txtSource_Change("show.ts");
        sendAt(dispatch.nowMs() + 1, {K::Opened, "#0 mpeg2video"});
        long long at = dispatch.nowMs() + 2;
        for (const MediaEvent& e : c.events) sendAt(at++, e);
        dispatch.postAt(at, [this] { tavo.bStopCapture = true; });
        view.notices.clear();
        view.boxes.clear();
        input.cmdOpen_Click();
        std::vector<std::string> want{"Opening...", ""};
        want.insert(want.end(), c.notices.begin(), c.notices.end());
        EXPECT_EQ(view.notices, want) << c.events.size() << " events, loop " << c.loop;
        EXPECT_EQ(media.request.loop, c.loop);
        EXPECT_EQ(view.boxes, c.box.empty() ? std::vector<std::string>{} : std::vector{c.box});
        if (input.isOpen()) input.cmdOpen_Click();
    }
    input.hideForm();
    EXPECT_EQ(store.get("DigitalVideo", "Source", ""), "show.ts");
}

// Pairs that find the ring full wait, in order, rather than overwrite bytes
// the capture loop hasn't read.
TEST_F(L21VideoTest, PairsWaitForRoomOnTheRingAndKeepTheirOrder) {
    input.txtSource_Change("show.ts");
    dispatch.postAt(1, [this] {
        queue(std::string(static_cast<std::size_t>(tavo.queueRoom()) - 1, 'x'));
        media.send({K::CaptionData, "", ccData(1, "AB"), 0});
        media.send({K::CaptionData, "", ccData(1, "CD"), 33});
        EXPECT_EQ(tavo.queueRoom(), 1);
        std::string drained;
        while (!tavo.queueEmpty()) drained += tavo.dequeueByte();
        media.send({K::Position, "", "", 66});
        while (!tavo.queueEmpty()) drained += tavo.dequeueByte();
        EXPECT_EQ(drained.substr(drained.size() - 5), "xABCD");
        tavo.bStopCapture = true;
    });
    input.cmdOpen_Click();
}

}  // namespace
}  // namespace zelvan
