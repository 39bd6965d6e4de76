#pragma once
// A serial link's window, recorded; `calls` keeps messages and setup captions
// in order. The decoder's window records through the same base.

#include <string>
#include <vector>

#include "line21/l21serialinput.h"
#include "platform/seriallink.h"

namespace zelvan::testing {

template <typename View>
struct RecordingLinkViewOf : View {
    void messageBox(const std::string& text, const std::string& detail) override {
        boxes.push_back(text + "|" + detail);
        calls.push_back("box:" + boxes.back());
    }
    void alert(const std::string& text, const std::string& detail) override {
        alerts.push_back(text + "|" + detail);
    }
    void setOpenCaption(const std::string& c) override { openCaption = c; }
    void setSetupCaption(const std::string& t, const std::string& refusal) override {
        setupCaption = t;
        setupTip = refusal;
        calls.push_back("setup:" + t);
    }
    void showReminder(bool visible) override { reminder = visible; }
    void setNotice(const std::string& text) override { notice = text; }
    std::optional<PortSetup> askPortSetup(const PortSetup&) override { return setupAnswer; }

    std::vector<std::string> boxes, alerts, calls;
    std::string openCaption = kCaptionOpen, setupCaption, setupTip, notice;
    bool reminder = false;
    std::optional<PortSetup> setupAnswer;  // the dialog's answer, or Cancel
};

using RecordingLinkView = RecordingLinkViewOf<SerialLinkView>;

struct RecordingL21SerialView : RecordingLinkViewOf<L21SerialView> {
    void placeWindow() override { calls.push_back("place"); }
    void showWindow() override {
        calls.push_back("show");
        visible = true;
    }
    void hideWindow() override { visible = false; }
    void setDMText(const std::string& text) override { dm = text; }
    void setNMText(const std::string&) override {}
    void showChannel(std::int16_t index) override {
        calls.push_back("channel:" + std::to_string(index));
    }

    std::string dm;
    bool visible = false;
};

}  // namespace zelvan::testing
