#include "line21/l21videoinput.h"

#include "line21/ccdata.h"

namespace zelvan {

namespace {
constexpr const char* kSection = "DigitalVideo";
}  // namespace

VideoSettings readVideoSettings(const SettingsStore& store) {
    VideoSettings s;
    s.Source = store.get(kSection, "Source", "");
    s.Field = store.get(kSection, "Field", "1") == "2" ? 2 : 1;
    s.Loop = readBoolSetting(store, kSection, "Loop", false);
    return s;
}

void writeVideoSettings(SettingsStore& store, const VideoSettings& settings) {
    store.set(kSection, "Source", settings.Source);
    store.set(kSection, "Field", std::to_string(settings.Field));
    store.set(kSection, "Loop", boolSettingText(settings.Loop));
}

L21VideoInput::L21VideoInput(Tavo& tavo, InL21& memory, MediaSource& media, L21VideoView& view)
    : L21Window(tavo, memory, view), m_media(media), m_view(view) {}

L21VideoInput::~L21VideoInput() {
    m_media.close();
}

void L21VideoInput::showForm() {
    m_tavo.InputFilterType = kL21VideoFilterType;
    m_view.placeWindow();
    m_settings = readVideoSettings(m_tavo.store());
    m_view.showSettings(m_settings);
    attachToDecoder();
    m_view.showWindow();
    if (!m_settings.Source.empty()) cmdOpen_Click();
}

// As the serial window does: the flush timer and the panes go first, the
// source stops, its section is saved, and capture ends.
void L21VideoInput::hideForm() {
    detachFromDecoder();
    closeSource("");
    writeVideoSettings(m_tavo.store(), m_settings);
    m_tavo.bStopCapture = true;
    m_view.hideWindow();
}

// Opening returns at once: the source opens on its reader's thread, and a
// failure comes back as an event while capture runs.
void L21VideoInput::cmdOpen_Click() {
    if (m_open) {
        m_tavo.bStopCapture = true;
        closeSource("Closed.");
        return;
    }
    if (m_settings.Source.empty()) {
        m_view.messageBox(kCouldntOpenSource, "No file or URL given.");
        return;
    }
    openSource();
    cmdShowNM_Click();
    cmdShowDM_Click();
    m_tavo.emptyQueue();
    m_tavo.captureLoop();
}

// Each opening counts afresh, and the settings it opens with are kept.
void L21VideoInput::openSource() {
    writeVideoSettings(m_tavo.store(), m_settings);
    m_pairs = 0;
    m_firstPositionMs = -1;
    m_toldNoCaptions = false;
    m_pending.clear();
    m_view.showStream("");
    m_view.showPairCount(0);
    m_view.showPosition(0);
    notice("Opening...");
    m_open = true;
    m_view.setOpenCaption("Close");
    m_media.open({m_settings.Source, m_settings.Loop},
                 [this](const MediaEvent& e) { onMediaEvent(e); });
}

void L21VideoInput::closeSource(const std::string& text) {
    m_media.close();
    m_open = false;
    m_view.setOpenCaption("Open");
    notice(text);
}

void L21VideoInput::txtSource_Change(const std::string& source) {
    m_settings.Source = source;
}

// A change of field acts on the next picture: the pairs are taken here.
void L21VideoInput::obField_Click(std::int16_t field) {
    m_settings.Field = field == 2 ? 2 : 1;
}

void L21VideoInput::chkLoop_Click(bool on) {
    m_settings.Loop = on;
    m_media.setLoop(on);
}

void L21VideoInput::onMediaEvent(const MediaEvent& event) {
    if (!m_open) return;
    using K = MediaEvent::Kind;
    switch (event.kind) {
        case K::Opened:
            m_view.showStream(event.text);
            notice("");
            break;
        case K::CaptionData:
            takeCaptionData(event);
            break;
        case K::Position:
            notePosition(event.positionMs);
            break;
        case K::Ended:
            if (!m_settings.Loop) notice(kEndOfFile);
            break;
        case K::Failed:
            m_tavo.bStopCapture = true;
            closeSource("");
            m_view.messageBox(kCouldntOpenSource, event.text + "\n" + m_settings.Source);
            break;
        case K::Stalled:
            notice(kStalled);
            break;
        case K::Resumed:
            notice("");
            break;
    }
    queuePending();
}

void L21VideoInput::takeCaptionData(const MediaEvent& event) {
    const std::string pairs =
        line21::fieldPairs(reinterpret_cast<const std::uint8_t*>(event.data.data()),
                           event.data.size(), m_settings.Field);
    if (!pairs.empty()) {
        m_pairs += static_cast<long>(pairs.size() / 2);
        m_view.showPairCount(m_pairs);
        m_pending += pairs;
    }
    notePosition(event.positionMs);
}

// Ten seconds of media without a pair is told once, as a notice: a source may
// start its captions late, and a wrong field is the likelier cause than a fault.
void L21VideoInput::notePosition(long long ms) {
    m_view.showPosition(ms);
    if (m_firstPositionMs < 0 || ms < m_firstPositionMs) m_firstPositionMs = ms;
    if (m_pairs > 0 || m_toldNoCaptions || ms - m_firstPositionMs < kNoCaptionsAfterMs) return;
    m_toldNoCaptions = true;
    notice(kNoCaptionsYet);
}

// Whole pairs go onto the ring where they fit, as a receive does; the rest
// waits for the next event rather than overwrite what the loop hasn't read.
void L21VideoInput::queuePending() {
    std::size_t n = 0;
    while (n + 2 <= m_pending.size() && m_tavo.queueRoom() >= 2) {
        m_tavo.queueByte(static_cast<std::uint8_t>(m_pending[n]));
        m_tavo.queueByte(static_cast<std::uint8_t>(m_pending[n + 1]));
        n += 2;
    }
    m_pending.erase(0, n);
}

void L21VideoInput::notice(const std::string& text) {
    m_view.setNotice(text);
    if (!text.empty()) m_tavo.doStatus(text);
}

}  // namespace zelvan
