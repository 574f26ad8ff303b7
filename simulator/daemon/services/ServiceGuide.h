#pragma once

#include "Context.h"
#include "Interface.h"
#include "Programmes.h"
#include "ServiceLineUp.h"

namespace sim {

// com.holvi.IServiceGuide: what is on.
class ServiceGuide : public Interface {
public:
    ServiceGuide(Context& context, ServiceLineUp& lineUp, Programmes& programmes);

private:
    void GetCurrentProgram(const Call& call, const ArgumentReader& in, ReplyWriter& out);

    Log& m_log;
    ServiceLineUp& m_lineUp;
    Programmes& m_programmes;
};

} // namespace sim
