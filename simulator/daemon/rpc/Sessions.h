#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "Session.h"

namespace sim {

// The sessions of all clients, by id. Ids count from 1 and are not reused.
class Sessions {
public:
    // `opened` is false when the session is about to end. Called before the interface's own hook
    // when it ends, and after it when it opens.
    using Hook = std::function<void(const Session&, bool opened)>;

    // Asks the interface; null if it refuses, with the reason in `status` (0 on success).
    Session* Open(Interface& interface, std::int32_t profile, std::uint16_t screen, Client& client,
                  std::int32_t& status);
    // False unless it is a session of this client.
    bool Close(std::uint32_t id, const Client& client);
    // Closes the sessions that a released client has left open, newest first.
    void CloseAll(const Client& client);

    // Null if the id is not in use.
    Session* Find(std::uint32_t id);
    // To be called when the session is used.
    static void Use(Session& session);
    // The session that the client has not used for the longest time, but for those with signals;
    // null if there is none.
    static Session* FindLongestUnused(const Client& client);
    void AddHook(Hook hook) { m_hooks.push_back(std::move(hook)); }
    std::size_t GetCount() const { return m_sessions.size(); }
    template <class F> void ForEach(F&& visit) const {
        for (const auto& [id, session] : m_sessions)
            visit(*session);
    }

private:
    void Close(Session& session);

    std::uint32_t m_lastId = 0;
    std::map<std::uint32_t, std::unique_ptr<Session>> m_sessions;
    std::vector<Hook> m_hooks;
};

} // namespace sim
