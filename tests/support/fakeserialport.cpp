#include "support/fakeserialport.h"

#include <utility>

namespace zelvan {

FakeSerialPort::FakeSerialPort(EventDispatch& dispatch) : m_dispatch(dispatch) {
    m_drainTimer = m_dispatch.makeTimer([this] { drainOne(); });
}

FakeSerialPort::~FakeSerialPort() {
    *m_alive = false;
}

// Events run in a later yield, and never after the port is gone.
void FakeSerialPort::post(std::function<void()> fn) {
    m_dispatch.post([alive = std::weak_ptr<bool>(m_alive), fn = std::move(fn)] {
        if (auto a = alive.lock(); a && *a) fn();
    });
}

void FakeSerialPort::postState() {
    const std::int32_t state = openState();
    post([this, state] {
        if (onState) onState(state);
    });
}

void FakeSerialPort::open() {
    ++opens;
    if (m_open) return;
    if (std::exchange(m_failOpen, false)) return setLastError(m_failReason);
    setLastError(refusal);
    m_open = true;
    postState();
}

void FakeSerialPort::close() {
    if (!m_open) return;
    if (std::exchange(m_failClose, false)) return setLastError(m_failReason);
    m_open = false;
    clearLine();
    postState();
}

void FakeSerialPort::purgeBuffers() {
    ++purges;
    clearLine();
}

void FakeSerialPort::clearLine() {
    m_rx.clear();
    m_tx.clear();
    m_drainTimer->setEnabled(false);
}

std::uint8_t FakeSerialPort::readByte() {
    if (m_rx.empty()) return 0;
    const std::uint8_t b = m_rx.front();
    m_rx.pop_front();
    return b;
}

void FakeSerialPort::write(const std::string& bytes) {
    if (!m_open) return;
    writes.push_back(bytes);
    if (m_drainMsPerByte == 0) {
        sent += bytes;
        return;
    }
    const bool idle = m_tx.empty();
    m_tx.insert(m_tx.end(), bytes.begin(), bytes.end());
    if (idle) restartDrain();
}

void FakeSerialPort::failNextOpen(std::string reason) {
    m_failOpen = true;
    m_failReason = std::move(reason);
}

void FakeSerialPort::failNextClose(std::string reason) {
    m_failClose = true;
    m_failReason = std::move(reason);
}

void FakeSerialPort::deliver(const std::string& bytes) {
    if (!m_open) return;
    m_rx.insert(m_rx.end(), bytes.begin(), bytes.end());
    postReceive();
}

// As the real component: one event for what arrived, another for what its
// handler left, as long as the handler takes something.
void FakeSerialPort::postReceive() {
    post([this] {
        if (rxThreshold() < 1 || m_rx.empty() || !onReceive) return;
        const std::size_t before = m_rx.size();
        onReceive();
        if (!m_rx.empty() && m_rx.size() < before) postReceive();
    });
}

void FakeSerialPort::setDrainMsPerByte(int ms) {
    m_drainMsPerByte = ms;
    restartDrain();
}

void FakeSerialPort::restartDrain() {
    m_drainTimer->setInterval(m_drainMsPerByte > 0 ? m_drainMsPerByte : 0);
    m_drainTimer->setEnabled(m_drainMsPerByte > 0 && !m_tx.empty());
}

void FakeSerialPort::drainOne() {
    if (!m_tx.empty()) {
        sent += static_cast<char>(m_tx.front());
        m_tx.pop_front();
    }
    if (m_tx.empty()) m_drainTimer->setEnabled(false);
}

void FakeSerialPort::setCarrier(bool on) {
    if (on == carrier) return;
    carrier = on;
    if (!m_open) return;
    post([this] {
        if (cdEvents() && onCarrier) onCarrier();
    });
}

void FakeSerialPort::vanish(std::string reason) {
    if (!m_open) return;
    m_open = false;
    clearLine();
    setLastError(std::move(reason));
    post([this] {
        if (onLost) onLost();
    });
    postState();
}

}  // namespace zelvan
