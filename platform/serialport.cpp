#include "platform/serialport.h"

namespace zelvan {

void SerialPort::setRxThreshold(std::int32_t v) {
    m_rxThreshold = v;
    eventsChanged();
}

void SerialPort::setCdEvents(bool on) {
    m_cdEvents = on;
    eventsChanged();
}

std::string SerialPort::dump() const {
    std::string s =
        "port=" + std::to_string(port()) + " baud=" + std::to_string(baud()) +
        " parity=" + std::to_string(parity()) + " databits=" + std::to_string(databits()) +
        " stopbits=" + std::to_string(stopbits()) + " open=" + std::to_string(openState()) +
        " rx=" + std::to_string(rxCount()) + " tx=" + std::to_string(txCount()) +
        " rxThreshold=" + std::to_string(m_rxThreshold) + " cdEvents=" + (m_cdEvents ? "1" : "0") +
        " device=" + deviceName();
    if (!m_lastError.empty()) s += " error=\"" + m_lastError + "\"";
    return s;
}

}  // namespace zelvan
