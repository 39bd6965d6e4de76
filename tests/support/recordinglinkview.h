#pragma once
// A serial link's window, recorded: its messages, captions and notices.

#include <string>
#include <vector>

#include "display/seriallink.h"

namespace zelvan::testing {

struct RecordingLinkView : SerialLinkView {
    void messageBox(const std::string& text, const std::string& detail) override {
        boxes.push_back(text + "|" + detail);
    }
    void alert(const std::string& text, const std::string& detail) override {
        alerts.push_back(text + "|" + detail);
    }
    void setOpenCaption(const std::string& c) override { openCaption = c; }
    void setSetupCaption(const std::string& t) override {
        setupCaption = t;
        ++setupCaptions;
    }
    void showReminder(bool visible) override { reminder = visible; }
    void setNotice(const std::string& text) override { notice = text; }

    std::vector<std::string> boxes, alerts;
    std::string openCaption = kCaptionOpen, setupCaption, notice;
    int setupCaptions = 0;
    bool reminder = false;
};

}  // namespace zelvan::testing
