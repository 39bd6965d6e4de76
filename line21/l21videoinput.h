#pragma once
// The rules of the digital video window, without a window system: the source
// and its settings, opening and closing it, and the caption pairs it delivers
// onto the capture ring. The caption memory, its decoder, the panes and the
// test buttons are those of the other line-21 windows. The Qt window
// frmL21Video binds its controls to this class; tests drive it over a
// scripted source on virtual time.

#include <cstdint>
#include <string>

#include "line21/l21window.h"
#include "platform/mediasource.h"
#include "platform/settingsstore.h"

namespace zelvan {

inline constexpr const char* kL21VideoTitle = "Input: Line-21 (Digital Video)";
inline constexpr std::int16_t kL21VideoFilterType = 6;
inline constexpr const char* kCouldntOpenSource = "Couldn't open source.";
inline constexpr const char* kNoCaptionsYet = "No caption data in this source yet.";
inline constexpr const char* kEndOfFile = "End of file.";
inline constexpr const char* kStalled = "The stream stopped; reconnecting...";
// Media time without a caption pair before the operator is told.
inline constexpr long long kNoCaptionsAfterMs = 10000;

// The section "DigitalVideo".
struct VideoSettings {
    std::string Source;
    std::int16_t Field = 1;  // 1: CC1/CC2, 2: CC3/CC4
    bool Loop = false;
};
VideoSettings readVideoSettings(const SettingsStore& store);
void writeVideoSettings(SettingsStore& store, const VideoSettings& settings);

class L21VideoView : public L21PanesView {
  public:
    virtual void placeWindow() = 0;
    // Modeless, owned by the main window.
    virtual void showWindow() = 0;
    virtual void hideWindow() = 0;
    // Modal, as a port's failure is.
    virtual void messageBox(const std::string& text, const std::string& detail) = 0;
    virtual void setOpenCaption(const std::string& caption) = 0;
    // The source box, the field options and the Loop box, without their clicks.
    virtual void showSettings(const VideoSettings& settings) = 0;
    // What the window tells of the source as it plays.
    virtual void showStream(const std::string& text) = 0;
    virtual void showPosition(long long ms) = 0;
    virtual void showPairCount(long count) = 0;
    virtual void setNotice(const std::string& text) = 0;
};

class L21VideoInput : public L21Window {
  public:
    L21VideoInput(Tavo& tavo, InL21& memory, MediaSource& media, L21VideoView& view);
    ~L21VideoInput() override;

    // --- the filter contract ---
    // Opens the stored source, if there is one, and stays in the capture
    // loop until capture stops.
    void showForm() override;
    void hideForm() override;

    // --- the controls ---
    // Closes an open source (capture stops); opens a closed one and captures.
    void cmdOpen_Click();
    void txtSource_Change(const std::string& source);
    void obField_Click(std::int16_t field);
    void chkLoop_Click(bool on);

    // What the source reports, on the logic thread.
    void onMediaEvent(const MediaEvent& event);

    bool isOpen() const { return m_open; }
    const VideoSettings& settings() const { return m_settings; }
    long pairCount() const { return m_pairs; }

  private:
    void openSource();
    void closeSource(const std::string& notice);
    void takeCaptionData(const MediaEvent& event);
    void notePosition(long long ms);
    void queuePending();
    void notice(const std::string& text);

    MediaSource& m_media;
    L21VideoView& m_view;
    VideoSettings m_settings;
    bool m_open = false;
    long m_pairs = 0;
    long long m_firstPositionMs = -1;
    bool m_toldNoCaptions = false;
    // Pairs that found no room on the ring yet; they go first when it has.
    std::string m_pending;
};

}  // namespace zelvan
