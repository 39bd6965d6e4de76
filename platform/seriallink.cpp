// Serial link management for the three serial windows.

#include "platform/seriallink.h"

#include <charconv>
#include <utility>

#include "platform/devicemap.h"

namespace zelvan {

namespace {

const char* parityLetter(std::int32_t parity) {
    if (parity == parity::kNone) return "n";
    if (parity == parity::kOdd) return "o";
    return "e";  // even, and mark and space too
}

const char* stopText(std::int32_t stop) {
    if (stop == stopbits::kOne) return "1";
    if (stop == stopbits::kTwo) return "2";
    return "1.5";
}

// A stored value that isn't a whole number keeps the default: the link then
// comes up as it would on a first start, which the operator can correct.
std::int32_t readNumber(const SettingsStore& store, const char* section, const char* key,
                        std::int32_t fallback) {
    const std::string text = store.get(section, key, std::to_string(fallback));
    std::int32_t value = 0;
    const char* end = text.data() + text.size();
    auto [ptr, ec] = std::from_chars(text.data(), end, value);
    if (text.empty() || ec != std::errc() || ptr != end) return fallback;
    return value;
}

}  // namespace

std::string portSettingsString(const SerialPort& port) {
    return std::to_string(port.port()) + ":" + std::to_string(port.baud()) + "," +
           parityLetter(port.parity()) + "," + std::to_string(port.databits()) + "," +
           stopText(port.stopbits());
}

SerialLink::SerialLink(const LinkProfile& profile, SerialPort& port, LinkContext context,
                       SerialLinkView& view)
    : m_profile(profile), m_port(port), m_context(context), m_view(view) {
    m_timerDummyMsg = m_context.dispatch.makeTimer([this] { showNotice(false, ""); });
    m_port.onState = [this](std::int32_t state) { onPortState(state); };
    m_port.onLost = [this] { onPortLost(); };
    if (m_profile.receives) m_port.onReceive = [this] { receive(); };
}

SerialLink::~SerialLink() {
    m_port.onState = nullptr;
    m_port.onLost = nullptr;
    m_port.onReceive = nullptr;
}

void SerialLink::yieldTimes(int n) {
    for (int i = 0; i < n; ++i) m_context.dispatch.yield();
}

void SerialLink::openPort() {
    if (isPortOpen()) return;
    m_port.open();
    yieldTimes(m_profile.yieldsAfterOpen);
    if (!isPortOpen()) {
        m_view.messageBox(kCouldntOpenPort, m_port.lastError());
        return;
    }
    m_port.purgeBuffers();
    if (m_profile.switchesReceive) m_port.setRxThreshold(1);
    if (m_profile.remindsByNotice)
        showNotice(false, "");
    else
        m_view.showReminder(false);
    // The port works with what the device took; a decoder box at the wrong
    // parity gives nothing readable, so the operator must learn why.
    if (!m_port.lastError().empty()) showNotice(true, m_port.lastError());
    if (std::exchange(m_backOnOpen, false) && whenBack) whenBack();
}

void SerialLink::closePort() {
    if (!isPortOpen()) return;
    closeLine();
    if (isPortOpen()) m_view.messageBox(kCouldntClosePort, m_port.lastError());
}

void SerialLink::closeLine() {
    if (m_profile.switchesReceive) m_port.setRxThreshold(0);
    if (m_profile.purgesOnClose) m_port.purgeBuffers();
    if (m_profile.drainsOnClose) waitForDrain();
    m_port.close();
}

// Frames already written reach the sign before the port closes, as long as the
// line moves at all. The wait yields, so input and buttons go on meanwhile;
// it may sleep between events rather than spin, since the bound's timer and
// the port's own progress both wake it.
void SerialLink::waitForDrain() {
    bool expired = false;
    auto bound = m_context.dispatch.makeTimer([&expired] { expired = true; });
    bound->setInterval(kDrainBoundMs);
    bound->setEnabled(true);
    while (m_port.txCount() >= 1 && !expired) m_context.dispatch.yieldOrWait();
}

void SerialLink::hangUpPort() {
    if (!isPortOpen()) return;
    m_context.capture.timedWait(kHangUpPauseMs);
    put("+++");
    m_context.capture.timedWait(kHangUpPauseMs);
    put("ATH\r");
}

void SerialLink::dial(const std::string& dialText) {
    const std::string command = "atdt" + dialText + "\r";
    if (isPortOpen())
        put(command);
    else
        showReminder();
}

void SerialLink::showReminder() {
    if (m_profile.remindsByNotice)
        showNotice(true, kOpenPortFirst);
    else
        m_view.showReminder(true);
}

void SerialLink::setup() {
    if (const std::optional<PortSetup> choice = m_view.askPortSetup(currentSetup()))
        applySetup(*choice);
    refreshSetupCaption();
}

PortSetup SerialLink::currentSetup() const {
    return {m_port.settings(), devicePath(m_context.store, m_port.port())};
}

// A default device stays unwritten, so the map keeps only what the operator chose.
void SerialLink::applySetup(const PortSetup& choice) {
    const PortSettings& s = choice.settings;
    m_port.setPort(s.port);
    m_port.setBaud(s.baud);
    m_port.setParity(s.parity);
    m_port.setDatabits(s.databits);
    m_port.setStopbits(s.stopbits);
    if (!choice.device.empty() && choice.device != devicePath(m_context.store, s.port))
        setDevicePath(m_context.store, s.port, choice.device);
    refreshSetupCaption();
}

void SerialLink::refreshSetupCaption() {
    m_view.setSetupCaption(portSettingsString(m_port), isPortOpen() ? m_port.lastError() : "");
}

void SerialLink::loadSettings() {
    const SettingsStore& store = m_context.store;
    const char* section = m_profile.section;
    const PortSettings& d = m_profile.defaults;
    m_port.setPort(readNumber(store, section, "port", d.port));
    m_port.setBaud(readNumber(store, section, "baud", d.baud));
    m_port.setParity(readNumber(store, section, "parity", d.parity));
    m_port.setDatabits(readNumber(store, section, "databits", d.databits));
    if (m_profile.storesStopbits)
        m_port.setStopbits(readNumber(store, section, "stopbits", d.stopbits));
    refreshSetupCaption();
}

void SerialLink::saveSettings() {
    if (m_profile.stopsCaptureOnSave) m_context.capture.stopCapture();
    closePort();
    // A network link that lost its peer is closed but still waiting to get it
    // back; the link of a window put away must not come back by itself.
    if (!isPortOpen()) m_port.close();
    yieldTimes(m_profile.yieldsBeforeSave);
    storeSettings();
}

void SerialLink::storeSettings() {
    SettingsStore& store = m_context.store;
    const char* section = m_profile.section;
    store.set(section, "port", std::to_string(m_port.port()));
    store.set(section, "baud", std::to_string(m_port.baud()));
    store.set(section, "parity", std::to_string(m_port.parity()));
    store.set(section, "databits", std::to_string(m_port.databits()));
    if (m_profile.storesStopbits) store.set(section, "stopbits", std::to_string(m_port.stopbits()));
}

void SerialLink::write(const std::string& bytes) {
    if (isPortOpen())
        put(bytes);
    else
        showNotice(true, kOpenPortFirst);
}

// Modem commands go on the same line as frames, so the tap sees them too.
void SerialLink::put(const std::string& bytes) {
    m_port.write(bytes);
    for (WriteTap* tap : m_taps) tap->written(bytes);
}

void SerialLink::showNotice(bool on, const std::string& text) {
    m_timerDummyMsg->setEnabled(false);
    if (!on) {
        m_notice.clear();
        m_view.setNotice(m_notice);
        return;
    }
    m_notice = text;
    m_view.setNotice(m_notice);
    m_timerDummyMsg->setInterval(kNoticeMs);
    m_timerDummyMsg->setEnabled(true);
    doubleBeep(m_context.tone);
}

// What is read is read before anything is queued. A fast sender (a replay, a
// burst after a stall) can be more than a ring ahead of the reader: the link
// takes no more than the ring has room for, and the port keeps the rest and
// raises another receive event for a later turn, so no byte is overwritten unread.
void SerialLink::receive() {
    std::string bytes;
    const int room = m_context.capture.queueRoom();
    while (m_port.rxCount() >= 1 && static_cast<int>(bytes.size()) < room)
        bytes += static_cast<char>(m_port.readByte());
    for (unsigned char b : bytes) m_context.capture.queueByte(b);
}

// A network port gets a lost connection back by itself: what the loss
// switched off comes back on as after the operator's open.
void SerialLink::onPortState(std::int32_t state) {
    m_view.setOpenCaption(state > 0 ? kCaptionClose : kCaptionOpen);
    refreshSetupCaption();
    if (state > 0 && isPortOpen() && std::exchange(m_backOnOpen, false) && whenBack) whenBack();
}

// The component has closed the port already, and its state event sets the
// caption. The message doesn't block: the other links and the capture below
// go on while the operator reads it.
// A connection over the network comes back by itself, so an input link's
// capture goes on, idle, until its bytes flow again.
void SerialLink::onPortLost() {
    const bool comesBack = isNetworkDevice(m_port.deviceName());
    if (m_profile.stopsCaptureWhenLost && !comesBack) m_context.capture.stopCapture();
    m_backOnOpen = whenLost && whenLost();
    std::string detail = m_port.lastError();
    if (!detail.empty()) detail += "\n";
    m_view.alert(kPortLost, detail + (comesBack ? kConnectionLostAdvice : kPortLostAdvice));
}

std::string SerialLink::dump() const {
    std::string s = std::string(m_profile.section) + ": " + m_port.dump();
    if (!m_notice.empty()) s += " notice=\"" + m_notice + "\"";
    return s;
}

}  // namespace zelvan
