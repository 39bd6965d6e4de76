#pragma once
// The port component for the device entry null: it opens and closes like any
// port, takes every byte written and drops it, and never receives. The web
// mirror's tap still sees each frame, so a venue without a sign shows the
// captions on phones.

#include <memory>

#include "platform/devicemap.h"
#include "platform/eventdispatch.h"
#include "platform/serialport.h"

namespace zelvan {

class NullPort : public SerialPort {
  public:
    explicit NullPort(EventDispatch& dispatch) : m_dispatch(dispatch) {}
    ~NullPort() override { *m_alive = false; }

    std::int32_t openState() const override { return m_open ? 1 : 0; }
    std::int32_t rxCount() const override { return 0; }
    std::int32_t txCount() const override { return 0; }
    void open() override { setOpen(true); }
    void close() override { setOpen(false); }
    void purgeBuffers() override {}
    std::uint8_t readByte() override { return 0; }
    void write(const std::string&) override {}
    std::string deviceName() const override { return kNullDeviceEntry; }

  private:
    void setOpen(bool open);

    EventDispatch& m_dispatch;
    bool m_open = false;
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};

}  // namespace zelvan
