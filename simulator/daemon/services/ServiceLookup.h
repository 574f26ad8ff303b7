#pragma once

#include "Interface.h"
#include "ServiceQueries.h"

namespace sim {

// com.holvi.IService: services by what is known of them.
class ServiceLookup : public Interface {
public:
    explicit ServiceLookup(ServiceQueries& queries);

private:
    void FindService(const Call& call, const ArgumentReader& in, ReplyWriter& out);

    ServiceQueries& m_queries;
};

} // namespace sim
