#pragma once
// The far end of a serial line: the master side of a pseudo-terminal pair,
// non-blocking, whose slave the program opens as its device. The descriptor
// helpers serve the rig's loopback sockets as well.

#include <fcntl.h>
#include <pty.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace zelvan {

// All of `bytes` into a non-blocking descriptor, however it takes them; false
// if it is gone. A socket's far end gone is an error here, not a SIGPIPE.
inline bool sendAll(int fd, const std::string& bytes, bool socket = false) {
    for (std::size_t off = 0; off < bytes.size();) {
        const char* at = bytes.data() + off;
        const std::size_t left = bytes.size() - off;
        const ssize_t n = socket ? ::send(fd, at, left, MSG_NOSIGNAL) : ::write(fd, at, left);
        if (n < 0 && errno != EAGAIN) return false;
        if (n > 0) off += static_cast<std::size_t>(n);
    }
    return true;
}

// Whatever has arrived so far on a non-blocking descriptor.
inline std::string takeAvailable(int fd) {
    std::string got;
    char buf[4096];
    for (ssize_t n; (n = ::read(fd, buf, sizeof buf)) > 0;) got.append(buf, n);
    return got;
}

struct PtyEnd {
    int master = -1;
    std::string slave;

    PtyEnd() {
        int slaveFd = -1;
        char name[128] = {};
        if (::openpty(&master, &slaveFd, name, nullptr, nullptr) != 0) return;
        ::close(slaveFd);
        slave = name;
        ::fcntl(master, F_SETFL, ::fcntl(master, F_GETFL) | O_NONBLOCK);
    }
    ~PtyEnd() { hangUp(); }
    PtyEnd(const PtyEnd&) = delete;
    PtyEnd& operator=(const PtyEnd&) = delete;

    void hangUp() {
        if (master >= 0) ::close(master);
        master = -1;
    }
    bool send(const std::string& bytes) const { return sendAll(master, bytes); }
    std::string take() const { return takeAvailable(master); }
};

}  // namespace zelvan
