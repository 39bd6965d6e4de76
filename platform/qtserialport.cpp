#include "platform/qtserialport.h"

#include <grp.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <QFile>
#include <cerrno>

#include "platform/devicemap.h"
#include "platform/qtext.h"

namespace zelvan {

namespace {

// A parity value outside the five is taken as even, as the settings text shows it.
QSerialPort::Parity toQtParity(std::int32_t parity) {
    switch (parity) {
        case parity::kNone:
            return QSerialPort::NoParity;
        case parity::kOdd:
            return QSerialPort::OddParity;
        case parity::kMark:
            return QSerialPort::MarkParity;
        case parity::kSpace:
            return QSerialPort::SpaceParity;
    }
    return QSerialPort::EvenParity;
}

// Linux has no setting for one and a half stop bits. Two are sent instead: a
// receiver reads only the first stop bit, so a longer stop does no harm.
QSerialPort::StopBits toQtStopBits(std::int32_t stop) {
    return stop == stopbits::kOne ? QSerialPort::OneStop : QSerialPort::TwoStop;
}

// The losses that end a port's life: the device went away or fails every
// read and write. Other errors (an unsupported request) leave the port be.
bool isLoss(QSerialPort::SerialPortError error) {
    return error == QSerialPort::ResourceError || error == QSerialPort::ReadError ||
           error == QSerialPort::WriteError;
}

// Who may use a device the operator may not: its group, named so the operator
// can ask to be let in.
std::string permissionAdvice(const QByteArray& path) {
    struct stat st {};
    if (::stat(path.constData(), &st) != 0) return {};
    const group* g = ::getgrgid(st.st_gid);
    if (!g || !g->gr_name) return {};
    return " Only members of the group \"" + std::string(g->gr_name) +
           "\" may use it: ask for your account to be added to that group, then log in again.";
}

}  // namespace

QtSerialPort::QtSerialPort(EventDispatch& dispatch, SettingsStore& store)
    : m_dispatch(dispatch), m_store(store) {
    // readyRead itself arrives inside a yield, so the receive event runs at
    // once: the bytes are on the ring before the yield returns, and the drain
    // that follows sends their frames before any window repaints.
    connect(&m_serial, &QSerialPort::readyRead, this, [this] { runReceive(); });
    m_receiveRetry.setSingleShot(true);
    m_receiveRetry.setInterval(kReceiveRetryMs);
    connect(&m_receiveRetry, &QTimer::timeout, this, [this] { runReceive(); });
    connect(&m_serial, &QSerialPort::errorOccurred, this,
            [this](QSerialPort::SerialPortError e) { onError(e); });
    m_carrierPoll.setInterval(kCarrierPollMs);
    connect(&m_carrierPoll, &QTimer::timeout, this, [this] { pollCarrier(); });
    m_drainWake.setSingleShot(true);
    m_drainWake.setInterval(10);
}

QtSerialPort::~QtSerialPort() {
    *m_alive = false;
    m_serial.close();
}

// Events run in a later yield, and never after the component is gone.
void QtSerialPort::post(std::function<void()> fn) {
    m_dispatch.post([alive = std::weak_ptr<bool>(m_alive), fn = std::move(fn)] {
        if (auto a = alive.lock(); a && *a) fn();
    });
}

void QtSerialPort::postState() {
    const std::int32_t state = openState();
    post([this, state] {
        if (onState) onState(state);
    });
}

// One receive event stands for all bytes that arrive until it runs.
void QtSerialPort::postReceive() {
    if (rxThreshold() < 1 || m_receivePosted) return;
    m_receivePosted = true;
    post([this] {
        m_receivePosted = false;
        runReceive();
    });
}

// The handler may take only what its reader has room for. What it leaves is
// offered again a moment later, after the capture loop has drained, and again
// until it is all taken: a burst never waits for the next arrival.
void QtSerialPort::runReceive() {
    if (rxThreshold() < 1 || rxCount() < 1 || !onReceive) return;
    onReceive();
    if (m_serial.isOpen() && rxCount() >= 1 && !m_receiveRetry.isActive()) m_receiveRetry.start();
}

std::string QtSerialPort::deviceName() const {
    return m_serial.isOpen() ? m_device : devicePath(m_store, port());
}

void QtSerialPort::open() {
    if (m_serial.isOpen()) return;
    m_device = devicePath(m_store, port());
    if (m_device.empty()) {
        setLastError("There is no port " + std::to_string(port()) + ": port numbers start at 1.");
        return;
    }
    m_serial.setPortName(toQString(m_device));
    if (!m_serial.open(QIODevice::ReadWrite)) {
        setLastError(describeOpenFailure());
        m_serial.clearError();
        return;
    }
    // A device that refuses a setting still carries bytes (a pseudo-terminal
    // has no character size, and a decoder box's 7 data bits arrive as bytes
    // with bit 7 clear anyway), so the port stays open with what it took and
    // lastError names what was refused.
    setLastError(applySettings());
    m_serial.clearError();
    eventsChanged();
    postState();
}

std::string QtSerialPort::describeOpenFailure() const {
    std::string text = m_device + ": " + fromQString(m_serial.errorString()) + ".";
    switch (m_serial.error()) {
        case QSerialPort::DeviceNotFoundError:
            text += " Choose the device for port " + std::to_string(port()) +
                    " in the port settings, or plug the device in.";
            break;
        case QSerialPort::PermissionError:
            if (const QByteArray path = QFile::encodeName(toQString(m_device));
                ::access(path.constData(), R_OK | W_OK) != 0 && errno == EACCES)
                text += permissionAdvice(path);
            else
                text += " Another program may be using the device.";
            break;
        default:
            break;
    }
    return text;
}

// Names the first setting the device refuses, so the operator knows which to
// change (a USB adapter may not take 5 data bits, a plain tty no parity).
std::string QtSerialPort::applySettings() {
    std::string refused;
    const auto refuse = [&](const std::string& what) {
        refused += (refused.empty() ? m_device + ": the device can't take " : ", ") + what;
    };
    if (databits() < 5 || databits() > 8 ||
        !m_serial.setDataBits(static_cast<QSerialPort::DataBits>(databits())))
        refuse(std::to_string(databits()) + " data bits");
    if (!m_serial.setBaudRate(baud())) refuse(std::to_string(baud()) + " baud");
    if (!m_serial.setParity(toQtParity(parity())))
        refuse("parity setting " + std::to_string(parity()));
    if (!m_serial.setStopBits(toQtStopBits(stopbits())))
        refuse("stop bits setting " + std::to_string(stopbits()));
    if (!m_serial.setFlowControl(QSerialPort::NoFlowControl)) refuse("a line without flow control");
    return refused.empty() ? refused : refused + ".";
}

// A new setting reaches an open port at once; a new port number waits for the
// next open, since an open port can't move to another device. What the device
// refuses is named until a setting it takes replaces it.
void QtSerialPort::settingsChanged() {
    if (!m_serial.isOpen()) return;
    setLastError(applySettings());
    m_serial.clearError();
}

void QtSerialPort::eventsChanged() {
    if (m_serial.isOpen() && cdEvents()) {
        // Changes while the events were off don't count.
        if (!m_carrierPoll.isActive()) readCarrier(m_carrier);
        m_carrierPoll.start();
    } else {
        m_carrierPoll.stop();
    }
    if (m_serial.isOpen() && rxCount() >= 1) postReceive();
}

void QtSerialPort::close() {
    if (!m_serial.isOpen()) return;
    m_serial.close();
    m_serial.clearError();
    m_carrierPoll.stop();
    setLastError({});
    postState();
}

void QtSerialPort::purgeBuffers() {
    if (m_serial.isOpen()) m_serial.clear(QSerialPort::AllDirections);
}

std::int32_t QtSerialPort::rxCount() const {
    return m_serial.isOpen() ? static_cast<std::int32_t>(m_serial.bytesAvailable()) : 0;
}

std::int32_t QtSerialPort::txCount() const {
    if (!m_serial.isOpen()) return 0;
    int queued = 0;
    if (::ioctl(m_serial.handle(), TIOCOUTQ, &queued) != 0) queued = 0;
    const auto count = static_cast<std::int32_t>(m_serial.bytesToWrite() + queued);
    if (queued > 0 && !m_drainWake.isActive()) m_drainWake.start();
    return count;
}

std::uint8_t QtSerialPort::readByte() {
    char c = 0;
    if (!m_serial.isOpen() || !m_serial.getChar(&c)) return 0;
    return static_cast<std::uint8_t>(c);
}

void QtSerialPort::write(const std::string& bytes) {
    if (!m_serial.isOpen() || bytes.empty()) return;
    m_serial.write(bytes.data(), static_cast<qint64>(bytes.size()));
    // Out now, not at the next turn of the event loop, which may first repaint
    // every window: a frame must not wait behind the screen.
    m_serial.flush();
}

void QtSerialPort::onError(QSerialPort::SerialPortError error) {
    if (m_serial.isOpen() && isLoss(error)) lose();
}

// Closing at once stops QSerialPort's watch on the dead device, which would
// otherwise report it again and again; the loss is told once.
void QtSerialPort::lose() {
    const std::string reason = fromQString(m_serial.errorString());
    m_serial.close();
    m_serial.clearError();
    m_carrierPoll.stop();
    setLastError(m_device + ": " + reason);
    post([this] {
        if (onLost) onLost();
    });
    postState();
}

bool QtSerialPort::readCarrier(bool& on) {
    const QSerialPort::PinoutSignals pins = m_serial.pinoutSignals();
    if (m_serial.error() != QSerialPort::NoError) {
        m_serial.clearError();
        return false;
    }
    on = pins.testFlag(QSerialPort::DataCarrierDetectSignal);
    return true;
}

void QtSerialPort::pollCarrier() {
    bool on = false;
    // A device without modem lines can't tell: stop asking it.
    if (!readCarrier(on)) {
        m_carrierPoll.stop();
        return;
    }
    if (on == m_carrier) return;
    m_carrier = on;
    post([this] {
        if (cdEvents() && onCarrier) onCarrier();
    });
}

}  // namespace zelvan
