#include "platform/qtport.h"

#include "platform/networkport.h"
#include "platform/nullport.h"
#include "platform/qtserialport.h"

namespace zelvan {

QtPort::QtPort(EventDispatch& dispatch, SettingsStore& store)
    : m_dispatch(dispatch), m_store(store) {}

QtPort::~QtPort() = default;

// A bad entry fails the open with a message naming it. The line is made anew
// only when the entry names another device, so a closed line's settings and
// watches carry over.
void QtPort::open() {
    if (openState() >= 1) return;
    const std::string entry = devicePath(m_store, port());
    const ParsedDevice parsed = parseDevice(port(), entry);
    if (!parsed.error.empty()) {
        setLastError(parsed.error);
        return;
    }
    if (!m_line || !(parsed.device == m_device)) useLine(parsed.device, entry);
    m_line->open();
    takeError();
}

void QtPort::useLine(const Device& device, const std::string& entry) {
    m_line.reset();
    m_device = device;
    if (std::holds_alternative<SerialDevice>(device))
        m_line = std::make_unique<QtSerialPort>(m_dispatch, m_store);
    else if (std::holds_alternative<NullDevice>(device))
        m_line = std::make_unique<NullPort>(m_dispatch);
    else
        m_line = std::make_unique<NetworkPort>(m_dispatch, device, entry);
    passSettings();
    m_line->onState = [this](std::int32_t state) {
        takeError();
        if (onState) onState(state);
    };
    m_line->onLost = [this] {
        takeError();
        if (onLost) onLost();
    };
    m_line->onReceive = [this] {
        if (onReceive) onReceive();
    };
    m_line->onCarrier = [this] {
        if (onCarrier) onCarrier();
    };
}

void QtPort::passSettings() {
    m_line->setPort(port());
    m_line->setBaud(baud());
    m_line->setParity(parity());
    m_line->setDatabits(databits());
    m_line->setStopbits(stopbits());
    m_line->setRxThreshold(rxThreshold());
    m_line->setCdEvents(cdEvents());
}

void QtPort::settingsChanged() {
    if (!m_line) return;
    passSettings();
    takeError();
}

void QtPort::eventsChanged() {
    if (!m_line) return;
    m_line->setRxThreshold(rxThreshold());
    m_line->setCdEvents(cdEvents());
}

void QtPort::close() {
    if (!m_line) return;
    m_line->close();
    takeError();
}

void QtPort::purgeBuffers() {
    if (m_line) m_line->purgeBuffers();
}

void QtPort::write(const std::string& bytes) {
    if (m_line) m_line->write(bytes);
}

std::string QtPort::deviceName() const {
    return openState() >= 1 ? m_line->deviceName() : devicePath(m_store, port());
}

}  // namespace zelvan
