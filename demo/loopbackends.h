#pragma once
// The far ends of the program's network links on loopback: the decoder box as
// a caption encoder that connects to the program's listener, and the serial
// server in front of the sign, which the program connects to. Both sockets
// are non-blocking and closed on exec, so the program inherits neither.

#include <cstdint>
#include <string>

namespace zelvan {

class LoopbackEnds {
  public:
    LoopbackEnds();  // the sign's server listening; a free port noted for the box's
    ~LoopbackEnds();
    LoopbackEnds(const LoopbackEnds&) = delete;
    LoopbackEnds& operator=(const LoopbackEnds&) = delete;

    std::string boxDevice() const;   // tcp-listen://127.0.0.1:PORT
    std::string signDevice() const;  // tcp://127.0.0.1:PORT

    // True once the box is connected to the program's listener; tries if not.
    bool connectBox();
    bool sendToBox(const std::string& bytes) const;
    // The sign's connection once the program has made it, else -1.
    int signConnection();

  private:
    std::uint16_t m_boxPort = 0;
    std::uint16_t m_signPort = 0;
    int m_signServer = -1;
    int m_box = -1;
    int m_sign = -1;
};

}  // namespace zelvan
