// The web mirror's readers: admission and the bounded fan-out.

#include "display/mirror/mirrorclients.h"

#include <algorithm>

namespace zelvan {

bool MirrorClients::admit(MirrorClient& client, const std::string& current) {
    if (m_clients.size() >= m_limit) {
        ++refused;
        return false;
    }
    m_clients.push_back(&client);
    client.send(current);
    return true;
}

void MirrorClients::leave(MirrorClient& client) {
    std::erase(m_clients, &client);
}

// A send or a drop may report a client's leaving at once, so the list is
// settled before any runs, and the sends go down a copy of it.
void MirrorClients::publish(const std::string& message) {
    std::vector<MirrorClient*> overflowing;
    std::erase_if(m_clients, [&](MirrorClient* client) {
        if (fits(*client, message)) return false;
        overflowing.push_back(client);
        return true;
    });
    const std::vector<MirrorClient*> readers = m_clients;
    for (MirrorClient* client : readers) client->send(message);
    dropped += static_cast<int>(overflowing.size());
    for (MirrorClient* client : overflowing) client->drop();
}

bool MirrorClients::fits(const MirrorClient& client, const std::string& message) const {
    return client.queued() + message.size() <= kQueueBound;
}

}  // namespace zelvan
