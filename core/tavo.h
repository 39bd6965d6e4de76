#pragma once
// The program's one state object: the ring of received bytes and the capture
// loop, the filter flags, the settings in memory, start-up and shutdown.
// Tests build a fresh one over test doubles of the platform.

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "core/displayoutput.h"
#include "core/inputfilter.h"
#include "core/mainview.h"
#include "platform/capturesink.h"
#include "platform/eventdispatch.h"
#include "platform/settingsstore.h"
#include "platform/tone.h"

namespace zelvan {

inline constexpr int kRawQueueSize = 1024;
inline constexpr long kPaneLimit = 30000;
inline constexpr const char* kDefaultStartupBarker =
    "Welcome to Halvane Captions.<br>Please adjust your reflector.<br>The feature will start "
    "shortly.";
inline constexpr int kBarkerSlots = 3;
// The longest a capture turn sleeps while a board is to be read.
inline constexpr int kBoardPollMs = 3;

class Tavo : public CaptureSink {
  public:
    Tavo(EventDispatch& dispatch, SettingsStore& store, Tone& tone);
    ~Tavo();
    Tavo(const Tavo&) = delete;
    Tavo& operator=(const Tavo&) = delete;

    // --- the capture pipeline ---
    void queueByte(std::uint8_t b) override;
    std::string dequeueByte();
    void captureLoop();
    void stopCapture() override { bStopCapture = true; }
    void pollInput();
    void drainQueue();
    void startWaitTimer(std::int16_t ms);
    // Waits ms without stopping input: bytes keep flowing meanwhile.
    void timedWait(std::int16_t ms) override;
    std::string getExternalText(std::int16_t i);
    std::string getExternalTextTrimmed(std::int16_t i);
    void doStatus(const std::string& s);
    bool queueEmpty() const { return rawQueueIn == rawQueueOut; }
    // Drops whatever is queued: a port that opens starts from an empty ring.
    void emptyQueue() { rawQueueIn = rawQueueOut = 1; }
    // Bytes a producer may still queue before it would overwrite unread ones:
    // one slot stays free, since full and empty look alike to the cursors.
    int queueRoom() const override {
        return kRawQueueSize - 1 - (rawQueueIn - rawQueueOut + kRawQueueSize) % kRawQueueSize;
    }

    // --- settings, start-up and shutdown ---
    void loadSettings();
    void saveSettings();
    void splitStartupBarker();
    void doubleBeep();
    void startup(Shell& shell);
    void exitProgram();
    void resetState();

    // Which flag and which window stand for a filter.
    bool& flag(FilterKind kind);
    InputFilter*& filterRef(FilterKind kind);
    // The filter of the first flag that is up, in the fixed order; or none.
    InputFilter* selectedFilter();

    EventDispatch& dispatch() { return m_dispatch; }
    SettingsStore& store() { return m_store; }
    LinkContext linkContext() { return {m_dispatch, m_store, *this, m_tone}; }

    // The ring and its one-based cursors.
    std::array<std::uint8_t, kRawQueueSize> rawQueue{};
    std::int16_t rawQueueIn = 1;
    std::int16_t rawQueueOut = 1;
    std::int32_t totalChars = 0;

    bool bStopCapture = false;
    bool bWaitDone = false;
    bool bInL21Serial = false;
    bool bInL21USB = false;
    bool bInAscii = false;
    bool bInKey = false;
    bool bInTDS = false;
    bool bInL21Video = false;
    bool bOutDW = false;

    // Settings of the section "General", in memory.
    bool BeepOnMessage = false;
    bool DoStartupBarker = true;
    std::string StartupBarker = kDefaultStartupBarker;
    bool Obfuscate = false;
    std::int16_t ObfuscateType = 0;
    std::int16_t InputFilterType = 1;
    std::int16_t ExitDisplayTask = 1;

    std::array<std::string, kBarkerSlots> barkerLines;
    std::int16_t barkerLineCount = 0;
    std::string vbCrLf = "\r\n";

    // Window references, set when a window is chosen and cleared when it is given up.
    InputFilter* frmL21Serial = nullptr;
    InputFilter* frmL21USB = nullptr;
    InputFilter* frmInAscii = nullptr;
    InputFilter* frmInKey = nullptr;
    InputFilter* frmInTDS = nullptr;
    InputFilter* frmL21Video = nullptr;
    DisplayOutput* frmOutDW = nullptr;
    MainView* view = nullptr;
    MainConsole* console = nullptr;
    Shell* shell = nullptr;

    std::unique_ptr<Timer> GeneralTimer;
    // How many capture loops stand on the stack now.
    int captureDepth = 0;

  private:
    void GeneralTimer_Timer();
    void showInPanes(const std::string& ch);
    void writeMarker(HistoryPane& pane, const char* text);

    EventDispatch& m_dispatch;
    SettingsStore& m_store;
    Tone& m_tone;
};

}  // namespace zelvan
