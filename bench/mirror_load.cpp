// The web mirror under load, against the real program (started offscreen on
// the pseudo-terminal rig, with the mirror on):
//  1. fan-out: READERS WebSocket readers on loopback; for each caption, the
//     time from its last frame on the sign to its message at each reader;
//     every reader must get every caption;
//  2. churn: readers come and go 10,000 times; the program's memory is
//     sampled as they do;
//  3. a reader that stops reading: captions go on until the program drops
//     it, and the program's memory stays bounded meanwhile.
//
// usage: bench_mirror_load PROGRAM [READERS] [CAPTIONS] [COMINGS AND GOINGS]
//        bench_mirror_load --hold PORT READERS
// The second form only connects the readers and keeps them reading until its
// input closes: pty_latency's --readers runs the program's latency with them.

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTcpServer>
#include <QWebSocket>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "display/mirror/mirrorfeed.h"
#include "display/mirror/mirrorserver.h"
#include "support/programrig.h"
#include "support/qtrig.h"

using zelvan::testing::popOnCaption;
using zelvan::testing::ProgramRig;
using zelvan::testing::waitFor;

namespace {

const std::string kBright("\x01\x20\x7F\x20\x01", 5);
using Clock = std::chrono::steady_clock;

struct Reader {
    QWebSocket socket;
    std::vector<std::pair<Clock::time_point, QString>> got;

    explicit Reader(std::uint16_t port) {
        QObject::connect(&socket, &QWebSocket::textMessageReceived,
                         [this](const QString& m) { got.emplace_back(Clock::now(), m); });
        socket.open(QUrl(QStringLiteral("ws://127.0.0.1:%1/live").arg(port)));
    }
};

using Readers = std::vector<std::unique_ptr<Reader>>;

Readers connectReaders(std::uint16_t port, int n) {
    Readers readers;
    for (int i = 0; i < n; ++i) readers.push_back(std::make_unique<Reader>(port));
    waitFor(
        [&] {
            return std::all_of(readers.begin(), readers.end(),
                               [](auto& r) { return !r->got.empty(); });
        },
        30000);
    return readers;
}

long rssKb(pid_t pid) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmRSS:")) return std::stol(line.substr(6));
    return -1;
}

double percentile(std::vector<double> v, double p) {
    std::sort(v.begin(), v.end());
    return v[static_cast<std::size_t>(p * static_cast<double>(v.size() - 1) + 0.5)];
}

std::uint16_t freePort() {
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort();
}

bool captionOnSign(ProgramRig& rig, const std::string& caption) {
    const std::size_t before = rig.signBytes.size();
    rig.sendToBox(caption);
    return rig.waitUntil([&] { return rig.signBytes.substr(before).ends_with(kBright); }, 5000, 0);
}

int fanOut(ProgramRig& rig, Readers& readers, int captions) {
    std::vector<double> ms;
    int missed = 0;
    for (int i = 0; i < captions; ++i) {
        char text[40];
        std::snprintf(text, sizeof text, "Caption number %04d", i);
        zelvan::testing::settle(100);
        for (auto& r : readers) r->got.clear();
        if (!captionOnSign(rig, popOnCaption(text))) return std::fprintf(stderr, "no frames\n"), 1;
        const auto onSign = Clock::now();
        const QString want = QString::fromLatin1(text);
        const auto has = [&](Reader& r) {
            return std::any_of(r.got.begin(), r.got.end(),
                               [&](auto& g) { return g.second.contains(want); });
        };
        waitFor(
            [&] {
                return std::all_of(readers.begin(), readers.end(),
                                   [&](auto& r) { return has(*r); });
            },
            5000);
        for (auto& r : readers) {
            const auto it = std::find_if(r->got.begin(), r->got.end(),
                                         [&](auto& g) { return g.second.contains(want); });
            if (it == r->got.end())
                ++missed;
            else
                ms.push_back(std::chrono::duration<double, std::milli>(it->first - onSign).count());
        }
    }
    std::printf(
        "fan-out: %zu readers, %d captions, missed %d, median %.2f ms, p99 %.2f ms, max %.2f ms\n",
        readers.size(), captions, missed, percentile(ms, 0.5), percentile(ms, 0.99),
        *std::max_element(ms.begin(), ms.end()));
    return missed == 0 ? 0 : 1;
}

// Memory is read once the readers that left have been gone a while, when the
// program has given their memory back.
long settledRssKb(ProgramRig& rig) {
    rig.waitUntil([] { return false; }, zelvan::MirrorServer::kGiveBackMs + 1000);
    return rssKb(rig.pid());
}

void churn(ProgramRig& rig, std::uint16_t port, int times) {
    constexpr int kBatch = 100;
    std::printf("churn: RSS before %ld kB", settledRssKb(rig));
    long most = 0;
    for (int done = 0; done < times; done += kBatch) {
        Readers batch = connectReaders(port, kBatch);
        for (auto& r : batch) r->socket.close();
        waitFor([&] {
            return std::all_of(batch.begin(), batch.end(), [](auto& r) {
                return r->socket.state() == QAbstractSocket::UnconnectedState;
            });
        });
        most = std::max(most, rssKb(rig.pid()));
        if ((done + kBatch) % 2500 == 0)
            std::printf(", after %d %ld kB", done + kBatch, settledRssKb(rig));
        std::fflush(stdout);
    }
    std::printf("; most while they came and went %ld kB\n", most);
}

// A raw connection that does the handshake with a small receive buffer; the
// stalled reader never reads from it again.
int stalledReader(std::uint16_t port) {
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    const int small = 4096;
    ::setsockopt(fd, SOL_SOCKET, SO_RCVBUF, &small, sizeof small);
    sockaddr_in at{};
    at.sin_family = AF_INET;
    at.sin_port = htons(port);
    at.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ::connect(fd, reinterpret_cast<sockaddr*>(&at), sizeof at);
    const std::string hello =
        "GET /live HTTP/1.1\r\nHost: x\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
        "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\nSec-WebSocket-Version: 13\r\n\r\n";
    ::write(fd, hello.data(), hello.size());
    return fd;
}

// Reads what the reader left unread: a dropped reader's stream ends.
bool dropped(int fd) {
    char buf[65536];
    for (const auto until = Clock::now() + std::chrono::seconds(3); Clock::now() < until;) {
        const ssize_t n = ::recv(fd, buf, sizeof buf, MSG_DONTWAIT);
        if (n == 0 || (n < 0 && errno != EAGAIN && errno != EWOULDBLOCK)) return true;
        if (n < 0) ::usleep(1000);
    }
    return false;
}

int stall(ProgramRig& rig, std::uint16_t port, int captions) {
    const int fd = stalledReader(port);
    zelvan::testing::settle(500);
    char head[16] = "";
    ::recv(fd, head, sizeof head - 1, MSG_PEEK | MSG_DONTWAIT);
    if (!std::string(head).starts_with("HTTP/1.1 101")) {
        std::printf("stalled reader: not let in (%s)\n", head);
        return 1;
    }
    const long before = rssKb(rig.pid());
    long most = before;
    const std::string row(27, 'x');
    for (int i = 0; i < captions; ++i) {
        char text[40];
        std::snprintf(text, sizeof text, "%05d", i);
        captionOnSign(rig, popOnCaption(text + row));
        // Changes closer together than the mirror's settling time make one message.
        rig.waitUntil([] { return false; }, zelvan::MirrorFeed::kSettleMs + 2);
        if (i % 100 == 0) most = std::max(most, rssKb(rig.pid()));
    }
    const bool gone = dropped(fd);
    ::close(fd);
    std::printf("stalled reader: %s after %d captions; RSS before %ld kB, most %ld kB\n",
                gone ? "dropped" : "NOT dropped", captions, before, most);
    return gone ? 0 : 1;
}

// The readers of pty_latency's run: raw connections that read and count,
// as lean as they can be, since phones don't share the program's processor.
int hold(std::uint16_t port, int n) {
    std::vector<pollfd> fds{{STDIN_FILENO, POLLIN, 0}};
    for (int i = 0; i < n; ++i) fds.push_back({stalledReader(port), POLLIN, 0});
    std::size_t bytes = 0;
    bool ready = false;
    for (;;) {
        ::poll(fds.data(), fds.size(), 1000);
        char buf[65536];
        if (fds[0].revents && ::read(STDIN_FILENO, buf, 1) <= 0) break;
        int live = 0;
        for (std::size_t i = 1; i < fds.size(); ++i) {
            if (fds[i].revents) {
                const ssize_t got = ::recv(fds[i].fd, buf, sizeof buf, MSG_DONTWAIT);
                if (got > 0) bytes += static_cast<std::size_t>(got);
                if (got > 0 && fds[i].events) fds[i].events = POLLIN | POLLPRI;  // heard from
            }
            live += fds[i].events == (POLLIN | POLLPRI);
        }
        if (!ready && live == n) {
            ready = true;
            std::printf("ready %d\n", n);
            std::fflush(stdout);
        }
    }
    std::printf("readers %d read %zu bytes\n", n, bytes);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (argc == 4 && std::string(argv[1]) == "--hold")
        return hold(std::atoi(argv[2]), std::atoi(argv[3]));
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s PROGRAM [READERS] [CAPTIONS] [COMINGS]\n", argv[0]);
        return 2;
    }
    const int n = argc > 2 ? std::atoi(argv[2]) : 500;
    const int captions = argc > 3 ? std::atoi(argv[3]) : 200;
    const std::uint16_t port = freePort();
    ProgramRig rig(argv[1], zelvan::ProgramOptions{.extraIni = "[WebMirror]\nEnabled=true\nPort=" +
                                                               std::to_string(port) + "\n"});
    if (!rig.waitUntil([&] { return rig.holds(rig.box.slave); }, 30000)) return 1;
    rig.waitUntil([] { return false; }, 1500);
    Readers readers = connectReaders(port, n);
    int failed = fanOut(rig, readers, captions);
    readers.clear();
    churn(rig, port, argc > 4 ? std::atoi(argv[4]) : 10000);
    failed += stall(rig, port, 3000);
    rig.stop();
    return failed;
}
