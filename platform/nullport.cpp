#include "platform/nullport.h"

namespace zelvan {

// The state event comes in a later yield, as a real port's does.
void NullPort::setOpen(bool open) {
    if (open == m_open) return;
    m_open = open;
    m_dispatch.post([this, alive = m_alive, open] {
        if (*alive && onState) onState(open ? 1 : 0);
    });
}

}  // namespace zelvan
