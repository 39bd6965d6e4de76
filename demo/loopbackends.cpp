#include "demo/loopbackends.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include "demo/ptyend.h"

namespace zelvan {
namespace {

sockaddr_in loopback(std::uint16_t port) {
    sockaddr_in at{};
    at.sin_family = AF_INET;
    at.sin_port = htons(port);
    at.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return at;
}

void closeFd(int& fd) {
    if (fd >= 0) ::close(fd);
    fd = -1;
}

// Listens on loopback at a port the system picks, and tells which.
int listenOnLoopback(std::uint16_t& port) {
    int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    sockaddr_in at = loopback(0);
    socklen_t size = sizeof at;
    auto* addr = reinterpret_cast<sockaddr*>(&at);
    if (fd < 0 || ::bind(fd, addr, size) != 0 || ::listen(fd, 1) != 0 ||
        ::getsockname(fd, addr, &size) != 0) {
        closeFd(fd);
        return -1;
    }
    port = ntohs(at.sin_port);
    return fd;
}

// Small writes leave at once, as from an encoder sending each caption whole.
void sendAtOnce(int fd) {
    const int one = 1;
    ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
}

}  // namespace

LoopbackEnds::LoopbackEnds() {
    m_signServer = listenOnLoopback(m_signPort);
    int probe = listenOnLoopback(m_boxPort);  // free now, for the program to listen on
    closeFd(probe);
}

LoopbackEnds::~LoopbackEnds() {
    closeFd(m_box);
    closeFd(m_sign);
    closeFd(m_signServer);
}

std::string LoopbackEnds::boxDevice() const {
    return "tcp-listen://127.0.0.1:" + std::to_string(m_boxPort);
}

std::string LoopbackEnds::signDevice() const {
    return "tcp://127.0.0.1:" + std::to_string(m_signPort);
}

bool LoopbackEnds::connectBox() {
    if (m_box >= 0) return true;
    int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in at = loopback(m_boxPort);
    if (fd < 0 || ::connect(fd, reinterpret_cast<const sockaddr*>(&at), sizeof at) != 0) {
        closeFd(fd);
        return false;
    }
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);
    sendAtOnce(fd);
    m_box = fd;
    return true;
}

bool LoopbackEnds::sendToBox(const std::string& bytes) const {
    return m_box >= 0 && sendAll(m_box, bytes, true);
}

int LoopbackEnds::signConnection() {
    if (m_sign < 0 && m_signServer >= 0)
        m_sign = ::accept4(m_signServer, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    return m_sign;
}

}  // namespace zelvan
