#pragma once
// The far end of a serial line: the master side of a pseudo-terminal pair,
// non-blocking, whose slave the program opens as its device.

#include <fcntl.h>
#include <pty.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace zelvan {

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
    // All of `bytes`, however the line takes them; false if it is gone.
    bool send(const std::string& bytes) const {
        for (std::size_t off = 0; off < bytes.size();) {
            const ssize_t n = ::write(master, bytes.data() + off, bytes.size() - off);
            if (n < 0 && errno != EAGAIN) return false;
            if (n > 0) off += static_cast<std::size_t>(n);
        }
        return true;
    }
    // Whatever has arrived so far.
    std::string take() const {
        std::string got;
        char buf[4096];
        for (ssize_t n; (n = ::read(master, buf, sizeof buf)) > 0;) got.append(buf, n);
        return got;
    }
};

}  // namespace zelvan
