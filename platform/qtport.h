#pragma once
// The port component a window holds: a serial line or a TCP connection,
// whichever the device map names for the port number when the port opens.
// It keeps the settings and passes them, and every operation, to the line it
// opened, so nothing above it knows which of the two carries the bytes.

#include <memory>

#include "platform/devicemap.h"
#include "platform/eventdispatch.h"
#include "platform/serialport.h"
#include "platform/settingsstore.h"

namespace zelvan {

class QtPort : public SerialPort {
  public:
    QtPort(EventDispatch& dispatch, SettingsStore& store);
    ~QtPort() override;

    std::int32_t openState() const override { return m_line ? m_line->openState() : 0; }
    std::int32_t rxCount() const override { return m_line ? m_line->rxCount() : 0; }
    std::int32_t txCount() const override { return m_line ? m_line->txCount() : 0; }
    void open() override;
    void close() override;
    void purgeBuffers() override;
    std::uint8_t readByte() override { return m_line ? m_line->readByte() : 0; }
    void write(const std::string& bytes) override;
    std::string deviceName() const override;

  private:
    void settingsChanged() override;
    void eventsChanged() override;
    void useLine(const Device& device, const std::string& entry);
    void passSettings();
    void takeError() { setLastError(m_line ? m_line->lastError() : std::string()); }

    EventDispatch& m_dispatch;
    SettingsStore& m_store;
    std::unique_ptr<SerialPort> m_line;
    Device m_device;
};

}  // namespace zelvan
