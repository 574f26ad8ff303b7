#pragma once

#include <gio/gio.h>

#include "ForkedProcess.h"
#include "Peer.h"

namespace bench {

// GDBus, peer to peer. GDBus reads on a thread of its own.
class GDBusPeer : public Peer {
public:
    explicit GDBusPeer(const Answers& answers);
    ~GDBusPeer() override;

    void Connect() override;
    int Execute(const std::string& word, std::string& screen) override;
    std::vector<TSMenuItem> GetMenuItems() override;

private:
    GVariant* Call(const std::string& method, GVariant* arguments, const char* replyType);

    ForkedProcess m_process;
    GDBusConnection* m_connection = nullptr;
};

} // namespace bench
