// The real program playing video made here from a recorded sample: in each
// container its captions reach the sign in real time, byte for byte as the
// same pairs from a decoder box; a field-2 stream only when field 2 is chosen.

#include <unistd.h>

#include <gtest/gtest.h>
#include <QTcpServer>
#include <QTcpSocket>

#include <filesystem>
#include <fstream>
#include <thread>

#include "demo/videomaker.h"
#include "platform/mediareader.h"
#include "platform/qtdispatch.h"
#include "support/logicframes.h"
#include "support/programrig.h"
#include "support/testdata.h"

namespace zelvan {
namespace {

using testing::ProgramRig;
using testing::signShows;

struct VideoCase {
    const char* name;
    VideoKind kind;
    const char* extension;
    int streamField;
    int chosenField;
    bool reachesSign;
};

constexpr VideoCase kCases[] = {
    {"Mpeg2InTransportStream", VideoKind::Mpeg2Ts, ".ts", 1, 1, true},
    {"H264InMp4", VideoKind::H264Mp4, ".mp4", 1, 1, true},
    {"CaptionTrackInMov", VideoKind::C608Mov, ".mov", 1, 1, true},
    {"Field2OnField2", VideoKind::Mpeg2Ts, ".ts", 2, 2, true},
    {"Field2OnField1", VideoKind::Mpeg2Ts, ".ts", 2, 1, false},
};

void PrintTo(const VideoCase& c, std::ostream* os) {
    *os << c.name;
}

struct VideoEndToEnd : ::testing::TestWithParam<VideoCase> {
    void TearDown() override { std::filesystem::remove(path); }
    std::string path;
};

TEST_P(VideoEndToEnd, CaptionsReachTheSignInRealTimeAsFromADecoderBox) {
    const VideoCase& c = GetParam();
    // A caption that flips into view at frame 20 and is erased at frame 60.
    SccRecording head = testing::sample("popon-short.scc");
    head.lines.resize(2);
    const std::vector<std::uint16_t> words = wordsPerFrame(head);
    path = (std::filesystem::temp_directory_path() /
            ("zelvan-video-" + std::to_string(::getpid()) + c.extension))
               .string();
    ASSERT_EQ(makeVideo(path, {.kind = c.kind, .field = c.streamField}, words), "");

    ProgramRig rig(ZELVAN_BINARY, "[General]\nInputFilterType=6\n[DigitalVideo]\nSource=" + path +
                                      "\nField=" + std::to_string(c.chosenField) + "\n");
    const std::string caption = "( horn ho";
    if (!c.reachesSign) {
        ASSERT_TRUE(rig.waitUntil([&] { return signShows(rig.signBytes, "Welcome"); }, 20000));
        rig.waitUntil([] { return false; }, 4000);  // the file plays in under 3 s
        EXPECT_FALSE(signShows(rig.signBytes, caption));
        return;
    }
    ASSERT_TRUE(rig.waitUntil([&] { return signShows(rig.signBytes, caption); }, 20000, 1))
        << "the caption never reached the sign";
    const auto shown = ProgramRig::Clock::now();
    ASSERT_TRUE(rig.waitUntil([&] { return !signShows(rig.signBytes, caption); }, 5000, 1));
    const auto erased = ProgramRig::Clock::now();
    rig.waitUntil([] { return false; }, 500);  // the rest of the erase

    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(erased - shown).count();
    EXPECT_NEAR(ms, (60 - 20) * 1001 / 30, 400);  // room for a busy machine
    const std::string expected = testing::logicFrames(boxStream(words));
    ASSERT_GE(rig.signBytes.size(), expected.size());
    EXPECT_EQ(rig.signBytes.substr(rig.signBytes.size() - expected.size()), expected);
}

// A stream that ends is reopened, and its captions reach the sign again: a
// server gives the stream, drops the connection, and gives it once more.
TEST(VideoStream, AStreamThatDropsIsReopenedAndItsCaptionsResume) {
    SccRecording head = testing::sample("popon-short.scc");
    head.lines.resize(2);
    const std::vector<std::uint16_t> words = wordsPerFrame(head);
    const std::string path = std::filesystem::temp_directory_path() /
                             ("zelvan-stream-" + std::to_string(::getpid()) + ".ts");
    ASSERT_EQ(makeVideo(path, {}, words), "");
    std::ifstream file(path, std::ios::binary);
    const QByteArray stream = QByteArray::fromStdString({std::istreambuf_iterator<char>(file), {}});
    std::filesystem::remove(path);
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    ProgramRig rig(ZELVAN_BINARY,
                   "[General]\nInputFilterType=6\n[DigitalVideo]\nSource=tcp://"
                   "127.0.0.1:" +
                       std::to_string(server.serverPort()) + "\n");
    const std::string frames = testing::logicFrames(boxStream(words));
    const auto times = [&] {
        int n = 0;
        for (auto at = rig.signBytes.find(frames); at != std::string::npos;
             at = rig.signBytes.find(frames, at + 1))
            ++n;
        return n;
    };
    for (int round = 1; round <= 2; ++round) {
        ASSERT_TRUE(server.waitForNewConnection(20000)) << "round " << round;
        QTcpSocket* peer = server.nextPendingConnection();
        peer->write(stream);
        peer->waitForBytesWritten(5000);
        peer->disconnectFromHost();
        EXPECT_TRUE(rig.waitUntil([&] { return times() == round; }, 10000)) << "round " << round;
    }
}

// The reader alone: a file or a stream that can't be opened fails once, with
// the reason; what it had posted before it closed is never heard.
TEST(VideoReader, FailsOnceWithTheReasonAndIsSilentOnceClosed) {
    QtDispatch dispatch;
    MediaReader reader(dispatch);
    std::vector<MediaEvent> events;
    const auto wait = [&](int ms) {
        for (auto end = ProgramRig::Clock::now() + std::chrono::milliseconds(ms);
             ProgramRig::Clock::now() < end && events.empty();)
            dispatch.yieldOrWaitFor(10);
    };
    for (auto [source, reason] :
         {std::pair{"/no/such/file.ts", "No such file"}, {"tcp://127.0.0.1:9", "refused"}}) {
        events.clear();
        reader.open({source}, [&](const MediaEvent& e) { events.push_back(e); });
        wait(5000);
        ASSERT_EQ(events.size(), 1u) << source;
        EXPECT_EQ(events[0].kind, MediaEvent::Kind::Failed);
        EXPECT_NE(events[0].text.find(reason), std::string::npos) << events[0].text;
    }
    const std::string path = std::filesystem::temp_directory_path() / "zelvan-reader.ts";
    ASSERT_EQ(makeVideo(path, {}, {0x9420}), "");
    reader.open({path}, [&](const MediaEvent& e) { events.push_back(e); });
    std::this_thread::sleep_for(std::chrono::milliseconds(300));  // events posted, not run
    reader.close();
    events.clear();
    wait(300);
    EXPECT_TRUE(events.empty());
    std::filesystem::remove(path);
}

INSTANTIATE_TEST_SUITE_P(Containers, VideoEndToEnd, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace zelvan
