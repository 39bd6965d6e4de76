#pragma once
// One serial link of a window: the line-21 decoder window, the ASCII window
// and the display window each own one, over their own serial port component.
// It opens and closes the port, dials and hangs up a modem, loads and saves
// the link's settings section, reads received bytes into a capture sink and
// keeps the window's captions and notices in step with the port.
//
// The three windows differ in small ways, held as data in a LinkProfile.
// Nothing here knows which window or filter it serves.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/capturesink.h"
#include "platform/eventdispatch.h"
#include "platform/serialport.h"
#include "platform/settingsstore.h"
#include "platform/tone.h"

namespace zelvan {

inline constexpr const char* kCouldntOpenPort = "Couldn't open port.";
// The reminder when bytes meet a closed port.
inline constexpr const char* kOpenPortFirst = "Open port first.";
inline constexpr const char* kCouldntClosePort = "Couldn't close port.";
inline constexpr const char* kPortLost = "The port has gone away.";
inline constexpr const char* kPortLostAdvice = "Plug the device back in, then press Open.";
inline constexpr const char* kConnectionLostAdvice =
    "The link connects again by itself once the other end is back.";
inline constexpr const char* kCaptionOpen = "Open";
inline constexpr const char* kCaptionClose = "Close";

// A port whose line never drains (flow control held, a dead adapter) would
// keep the display window's close waiting for ever; after this long it
// closes anyway and the unsent bytes are lost.
inline constexpr int kDrainBoundMs = 2000;
inline constexpr std::int16_t kHangUpPauseMs = 1500;
inline constexpr int kNoticeMs = 5000;
// The dial string box starts empty: there is no number every site shares, and
// an empty box dials nothing.
inline constexpr const char* kDefaultDialText = "";

struct LinkProfile {
    const char* section = "";           // the settings section
    PortSettings defaults;              // used for every key the section lacks
    bool storesStopbits = false;        // only the decoder link keeps its stop bits
    int yieldsAfterOpen = 0;            // the decoder link lets its box settle after opening
    bool switchesReceive = false;       // receive events on after open, off before close
    bool purgesOnClose = false;         // input links drop what is unread when they close
    bool drainsOnClose = false;         // the display link lets written frames go out first
    bool receives = false;              // received bytes go onto the capture ring
    bool stopsCaptureOnSave = false;    // the decoder window stops capture before saving...
    int yieldsBeforeSave = 0;           // ...and lets events run out after closing
    bool remindsByNotice = false;       // reminder as a timed notice, not a label
    bool stopsCaptureWhenLost = false;  // a lost input port ends capture, as Close does
};

inline constexpr LinkProfile kL21Link{
    .section = "L21Port",
    .defaults = {1, 1200, parity::kOdd, 7, stopbits::kOne},
    .storesStopbits = true,
    .yieldsAfterOpen = 1000,
    .switchesReceive = true,
    .purgesOnClose = true,
    .receives = true,
    .stopsCaptureOnSave = true,
    .yieldsBeforeSave = 1000,
    .stopsCaptureWhenLost = true,
};

inline constexpr LinkProfile kAsciiLink{
    .section = "AsciiPort",
    .defaults = {1, 9600, parity::kNone, 8, stopbits::kOne},
    .purgesOnClose = true,
    .receives = true,
    .stopsCaptureWhenLost = true,
};

inline constexpr LinkProfile kDisplayLink{
    .section = "DWPort",
    .defaults = {2, 9600, parity::kNone, 8, stopbits::kOne},
    .drainsOnClose = true,
    .remindsByNotice = true,
};

// What a link shows in its window. The window implements it.
class SerialLinkView {
  public:
    virtual ~SerialLinkView() = default;
    // A modal message box with the default buttons and title; `detail`, when
    // not empty, stands under the text and says what the system reported.
    virtual void messageBox(const std::string& text, const std::string& detail) = 0;
    // A message that doesn't hold up the program: capture goes on beneath it.
    virtual void alert(const std::string& text, const std::string& detail) = 0;
    // The open/close button: "Open" or "Close".
    virtual void setOpenCaption(const std::string& caption) = 0;
    // The setup button: the port settings text, and as its tip what the
    // device refused of them (empty when it took them all or the port is closed).
    virtual void setSetupCaption(const std::string& text, const std::string& refusal) = 0;
    // The input windows' reminder label, "Open the port!" and the like.
    virtual void showReminder(bool visible) = 0;
    // The window's notice: the display window's status bar, first panel.
    virtual void setNotice(const std::string& text) = 0;
    // The setup dialog, modal, starting from `current`: the operator's choice,
    // or nothing on Cancel. A window without one keeps the settings.
    virtual std::optional<PortSetup> askPortSetup(const PortSetup&) { return std::nullopt; }
};

// Sees every byte the link puts on the line, in order, as it goes out: the
// feed of the sign preview and of the web mirror. It runs inside the write,
// so it only takes note.
class WriteTap {
  public:
    virtual ~WriteTap() = default;
    virtual void written(const std::string& bytes) = 0;
};

// The text on a setup button: "1:1200,o,7,1". Written, never read back.
std::string portSettingsString(const SerialPort& port);

class SerialLink {
  public:
    // The view is called only after construction, so a window may pass itself
    // while it is still being built; it calls refreshSetupCaption once its
    // controls exist.
    SerialLink(const LinkProfile& profile, SerialPort& port, LinkContext context,
               SerialLinkView& view);
    ~SerialLink();
    SerialLink(const SerialLink&) = delete;
    SerialLink& operator=(const SerialLink&) = delete;

    void openPort();
    void closePort();
    bool isPortOpen() const { return m_port.openState() >= 1; }
    // Drops the modem's line: two pauses of 1500 ms around "+++", then "ATH".
    void hangUpPort();
    // The dial button, with the text of the dial string box.
    void dial(const std::string& dialText);
    // The setup button of the ASCII and display windows: the view's dialog.
    // The decoder window opens its setup window modeless and applies its
    // choice itself.
    void setup();
    // The settings and the device of the port number, as the dialog starts.
    PortSetup currentSetup() const;
    // Writes a dialog's choice into the component, in the order port, baud,
    // parity, data bits, stop bits, maps the device and renews the caption.
    // Nothing is opened or closed: an open port takes the settings at once.
    void applySetup(const PortSetup& choice);
    void refreshSetupCaption();
    // Reads the section into the component (showForm).
    void loadSettings();
    // Closes the port if open and writes the section (hideForm).
    void saveSettings();
    // sendToPort: writes on an open port, or reminds the operator.
    void write(const std::string& bytes);
    // A message in the status bar for 5 seconds, with the two-tone beep.
    void showNotice(bool on, const std::string& text);
    // Reads everything waiting, then queues it byte by byte.
    void receive();

    SerialPort& port() { return m_port; }
    SettingsStore& store() { return m_context.store; }
    const LinkProfile& profile() const { return m_profile; }
    const std::string& notice() const { return m_notice; }
    // Runs when the device went away, after the port closed and before the
    // operator's message. It returns whether it switched off what the port fed
    // (the display window unticks its filter box, so frames don't each beep).
    std::function<bool()> whenLost;
    // Runs when the port opens again after a loss whose whenLost switched
    // something off, by the operator or by itself (a network port that got
    // its connection back): mid-show, captions resume once the device is back.
    std::function<void()> whenBack;
    // Taps see the bytes in the order they were added.
    void addTap(WriteTap& tap) { m_taps.push_back(&tap); }
    void removeTap(WriteTap& tap) { std::erase(m_taps, &tap); }

    std::string dump() const;

  private:
    void onPortState(std::int32_t state);
    void onPortLost();
    void showReminder();
    void closeLine();
    void waitForDrain();
    void yieldTimes(int n);
    void storeSettings();
    void put(const std::string& bytes);

    const LinkProfile& m_profile;
    SerialPort& m_port;
    LinkContext m_context;
    SerialLinkView& m_view;
    std::unique_ptr<Timer> m_timerDummyMsg;
    std::string m_notice;
    std::vector<WriteTap*> m_taps;
    bool m_backOnOpen = false;
};

}  // namespace zelvan
