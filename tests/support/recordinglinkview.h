#pragma once
// A serial link's window, recorded: its messages, captions and notices, and
// in `calls` the messages and setup captions in the order they came. A window
// with more to it (the decoder's) records through the same base.

#include <string>
#include <vector>

#include "display/seriallink.h"

namespace zelvan::testing {

template <typename View>
struct RecordingLinkViewOf : View {
    void messageBox(const std::string& text, const std::string& detail) override {
        boxes.push_back(text + "|" + detail);
        calls.push_back("box:" + boxes.back());
    }
    void alert(const std::string& text, const std::string& detail) override {
        alerts.push_back(text + "|" + detail);
        calls.push_back("alert:" + alerts.back());
    }
    void setOpenCaption(const std::string& c) override { openCaption = c; }
    void setSetupCaption(const std::string& t) override {
        setupCaption = t;
        ++setupCaptions;
        calls.push_back("setup:" + t);
    }
    void showReminder(bool visible) override { reminder = visible; }
    void setNotice(const std::string& text) override { notice = text; }

    std::vector<std::string> boxes, alerts, calls;
    std::string openCaption = kCaptionOpen, setupCaption, notice;
    int setupCaptions = 0;
    bool reminder = false;
};

using RecordingLinkView = RecordingLinkViewOf<SerialLinkView>;

}  // namespace zelvan::testing
