#pragma once

#include <systemd/sd-bus.h>

#include "ForkedProcess.h"
#include "Peer.h"

namespace bench {

// sd-bus, peer to peer: without a broker between the two processes.
class SdBusPeer : public Peer {
public:
    explicit SdBusPeer(const Answers& answers);
    ~SdBusPeer() override;

    void Connect() override;
    int Execute(const std::string& word, std::string& screen) override;
    std::vector<TSMenuItem> GetMenuItems() override;
    // For messages that are only written and read, not sent.
    sd_bus* GetBus() const { return m_bus; }

private:
    ForkedProcess m_process;
    sd_bus* m_bus = nullptr;
};

// Writes the items as a(sbu), and reads them.
void AppendItems(sd_bus_message* message, const std::vector<TSMenuItem>& items);
std::vector<TSMenuItem> ReadItems(sd_bus_message* message);

} // namespace bench
