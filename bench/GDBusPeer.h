#pragma once

#include "FarSide.h"
#include "DaemonClient.h"

#include <gio/gio.h>

namespace bench {

// GDBus, peer to peer. It has a thread of its own for its input.
class TCGDBusPeer : public IPeer {
public:
    explicit TCGDBusPeer(const TSAnswers& answers);
    ~TCGDBusPeer() override;

    void Connect() override;
    int Execute(const std::string& word, std::string& screen) override;
    std::vector<TSMenuItem> GetMenuItems() override;

private:
    GVariant* Call(const char* method, GVariant* arguments, const char* replyType);

    TCFarSide m_FarSide;
    GDBusConnection* m_pConnection = nullptr;
};

} // namespace bench
