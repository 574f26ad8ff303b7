#pragma once

#include "FarSide.h"
#include "DaemonClient.h"

#include <systemd/sd-bus.h>

namespace bench {

// sd-bus, peer to peer: no broker between the two processes.
class TCSdBusPeer : public IPeer {
public:
    explicit TCSdBusPeer(const TSAnswers& answers);
    ~TCSdBusPeer() override;

    void Connect() override;
    int Execute(const std::string& word, std::string& screen) override;
    std::vector<TSMenuItem> GetMenuItems() override;
    // For messages that are only written and read.
    sd_bus* Bus() const { return m_pBus; }

private:
    TCFarSide m_FarSide;
    sd_bus* m_pBus = nullptr;
};

// Writes the items as a(sbu), and reads them.
void AppendItems(sd_bus_message* message, const std::vector<TSMenuItem>& items);
std::vector<TSMenuItem> ReadItems(sd_bus_message* message);

} // namespace bench
