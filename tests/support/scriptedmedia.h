#pragma once
// A media source that the test plays: it records what the window asks of it,
// and the test hands its events to the listener as the reader thread would.
// And the digital video window, recorded.

#include <string>
#include <vector>

#include "line21/l21videoinput.h"
#include "platform/mediasource.h"

namespace zelvan::testing {

struct ScriptedMedia : MediaSource {
    void open(const MediaRequest& r, Listener onEvent) override {
        request = r;
        listener = std::move(onEvent);
    }
    void close() override { listener = nullptr; }
    void setLoop(bool on) override { request.loop = on; }
    // As a posted event runs: only while the source is open.
    void send(const MediaEvent& e) {
        if (listener) listener(e);
    }

    MediaRequest request;
    Listener listener;
};

struct RecordingVideoView : L21VideoView {
    void placeWindow() override {}
    void showWindow() override {}
    void hideWindow() override {}
    void messageBox(const std::string& text, const std::string& detail) override {
        boxes.push_back(text + "|" + detail);
    }
    void setOpenCaption(const std::string&) override {}
    void showSettings(const VideoSettings&) override {}
    void showStream(const std::string&) override {}
    void showPosition(long long) override {}
    void showPairCount(long) override {}
    void setNotice(const std::string& text) override { notices.push_back(text); }
    void setDMText(const std::string&) override {}
    void setNMText(const std::string&) override {}
    void showChannel(std::int16_t) override {}

    std::vector<std::string> boxes, notices;
};

}  // namespace zelvan::testing
