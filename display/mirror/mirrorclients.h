#pragma once
// The readers of the web mirror and the fan-out of its messages. Each reader
// has a bounded send queue: one that stops reading (a phone gone to sleep
// with its page open, a stalled network) is dropped when its queue would
// overflow, so it never grows memory nor holds up the others. Past the limit
// of readers a new one is refused.

#include <cstddef>
#include <string>
#include <vector>

namespace zelvan {

// One connected reader; the server implements it over its socket.
class MirrorClient {
  public:
    virtual ~MirrorClient() = default;
    // Bytes given to the connection that the network hasn't taken yet.
    virtual std::size_t queued() const = 0;
    virtual void send(const std::string& message) = 0;
    // Ends the connection at once; what is queued is lost.
    virtual void drop() = 0;
};

class MirrorClients {
  public:
    // A few hundred captions: a reader whose network merely hiccups keeps up,
    // and a thousand stalled readers hold 64 MB at most.
    static constexpr std::size_t kQueueBound = 64 * 1024;

    explicit MirrorClients(std::size_t limit) : m_limit(limit) {}

    // Takes the client in and sends it `current` first; false, and nothing
    // sent, when the mirror has its limit of readers already.
    bool admit(MirrorClient& client, const std::string& current);
    // The client has gone; unknown clients are ignored.
    void leave(MirrorClient& client);
    // Sends the message to every reader, dropping those it would overflow.
    void publish(const std::string& message);

    std::size_t count() const { return m_clients.size(); }
    std::size_t limit() const { return m_limit; }
    int refused = 0;
    int dropped = 0;

  private:
    bool fits(const MirrorClient& client, const std::string& message) const;

    std::size_t m_limit;
    std::vector<MirrorClient*> m_clients;
};

}  // namespace zelvan
