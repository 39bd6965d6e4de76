// The web mirror's logic: what the readers are sent for a change of the sign,
// when it is sent, and the bounded fan-out to the readers.

#include <gtest/gtest.h>

#include "display/mirror/mirrorclients.h"
#include "display/mirror/mirrorfeed.h"
#include "display/mirror/mirrorsettings.h"
#include "display/protocol.h"
#include "support/memorysettingsstore.h"
#include "support/virtualdispatch.h"

namespace zelvan {
namespace {

// Rows leave for the sign reversed, as the display sends them by default;
// readers get them as the reflector shows them.
TEST(MirrorMessageTest, RowsReadAsInTheReflectorInUtf8) {
    const struct {
        std::string text;
        int column;
        std::string row;  // as the message carries it
    } cases[] = {
        {"Hello", 1, "Hello"},
        {"Hi", 20, std::string(19, ' ') + "Hi"},  // leading blanks hold the place
        {"\x95 la \x95", 1, "\u266A la \u266A"},
        {"caf\xE9 \x80\x93 \x95", 1, "caf\u00E9 \u20AC\u201C \u266A"},
        {"\"q\" a\\b", 1, "\\\"q\\\" a\\\\b"},
    };
    for (const auto& c : cases) {
        RecordingDisplayLink link;
        DisplayProtocol sign{link};
        sign.writeLine(c.text, 2, static_cast<std::int16_t>(c.column));
        sign.sendDim();
        SignModel model;
        model.feed(link.bytes());
        EXPECT_EQ(mirrorMessage(7, readerView(model)),
                  "{\"seq\": 7, \"rows\": [\"\", \"" + c.row + "\", \"\"], \"bright\": false}")
            << c.text;
    }
    // A byte the sign's font lacks shows as the box the sign draws for it.
    SignModel model;
    model.feed("\x01\x20\x20\x20\x81\x02\x81\x01");
    EXPECT_EQ(readerView(model).rows[0], std::string(29, ' ') + "\u25A1\u25A1\u25A1");
}

struct MirrorFeedTest : ::testing::Test {
    VirtualDispatch dispatch;
    std::vector<std::string> published;
    MirrorFeed feed{dispatch, [this](const std::string& m) { published.push_back(m); }};
    RecordingDisplayLink link;
    DisplayProtocol sign{link};

    void write() {
        for (const std::string& w : link.writes) feed.written(w);
        link.clear();
        dispatch.advance(MirrorFeed::kSettleMs - 1);
    }
};

// The frames of a caption all go out before the readers hear of it, and a
// burst of them (dim, erase, rows, bright) makes one message; frames that
// change nothing a reader sees make none.
TEST_F(MirrorFeedTest, OneMessageForEachChangeAfterTheFramesWentOut) {
    EXPECT_EQ(feed.current(), R"({"seq": 0, "rows": ["", "", ""], "bright": true})");
    sign.sendDim();
    sign.DWErase();
    sign.writeLine("One", 3, 1);
    sign.sendBright();
    write();
    EXPECT_TRUE(published.empty()) << "not inside the write";
    dispatch.advance(1);
    ASSERT_EQ(published.size(), 1u);
    EXPECT_EQ(published[0], R"({"seq": 1, "rows": ["", "", "One"], "bright": true})");
    EXPECT_EQ(feed.current(), published[0]);
    sign.sendBoardRear();
    sign.writeLine("One", 3, 1);
    write();
    dispatch.advance(1);
    EXPECT_EQ(published.size(), 1u);
    sign.sendRollup();
    write();
    dispatch.advance(1);
    ASSERT_EQ(published.size(), 2u);
    EXPECT_EQ(published[1], R"({"seq": 2, "rows": ["", "One", ""], "bright": true})");
}

// A reader whose leaving, like a socket's, may come from inside a call.
struct Reader : MirrorClient {
    std::size_t queued() const override { return backlog; }
    void send(const std::string& m) override {
        got.push_back(m);
        backlog += readsNothing ? m.size() : 0;
        if (onCall) onCall();
    }
    void drop() override {
        dropped = true;
        if (onCall) onCall();
    }
    std::size_t backlog = 0;
    bool readsNothing = false, dropped = false;
    std::vector<std::string> got;
    std::function<void()> onCall;
};

// A reader that stops reading is dropped when its queue would overflow, and
// the others go on; past the limit a reader is refused. A reader may leave
// from inside a send or a drop.
TEST(MirrorClientsTest, EveryReaderGetsEveryMessageUntilItsQueueOverflows) {
    MirrorClients clients(3);
    Reader fast, stalled, leaving, late;
    stalled.readsNothing = true;
    for (Reader* r : {&fast, &stalled, &leaving}) EXPECT_TRUE(clients.admit(*r, "now"));
    EXPECT_FALSE(clients.admit(late, "now"));
    EXPECT_EQ(clients.refused, 1);
    EXPECT_TRUE(late.got.empty());
    leaving.onCall = [&] { clients.leave(leaving); };
    stalled.onCall = [&] {
        if (stalled.dropped) clients.leave(stalled);
    };
    const std::string message(1000, 'm');
    for (int i = 0; i < 100; ++i) clients.publish(message);
    EXPECT_EQ(fast.got.size(), 101u);
    EXPECT_EQ(leaving.got.size(), 2u);
    EXPECT_TRUE(stalled.dropped);
    EXPECT_EQ(stalled.got.size(), 1 + (MirrorClients::kQueueBound - 3) / message.size());
    EXPECT_LE(stalled.backlog, MirrorClients::kQueueBound);
    EXPECT_EQ(clients.dropped, 1);
    EXPECT_EQ(clients.count(), 1u);
    EXPECT_TRUE(clients.admit(late, "now"));
}

TEST(MirrorSettingsTest, OffByDefaultAndBadValuesKeepTheDefaults) {
    MemorySettingsStore store;
    for (const char* bad : {"0", "65536", "80x"}) {
        store.set(kWebMirrorSection, "Port", bad);
        store.set(kWebMirrorSection, "MaxClients", bad);
        EXPECT_EQ(readMirrorSettings(store), MirrorSettings{}) << bad;
    }
    writeMirrorSettings(store, {true, "0.0.0.0", 80, 1});
    EXPECT_EQ(readMirrorSettings(store), (MirrorSettings{true, "0.0.0.0", 80, 1}));
}

}  // namespace
}  // namespace zelvan
