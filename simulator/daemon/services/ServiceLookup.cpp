#include "ServiceLookup.h"

#include "ServiceTypes.h"

namespace sim {

ServiceLookup::ServiceLookup(ServiceQueries& queries)
    : Interface("com.holvi.IService", Calls::ToSession), m_queries(queries) {
    Add("FindService",
        {Out("status", kInt), In("criteria", kCriteria), Out("record", kRecord), In("count", kInt)},
        &ServiceLookup::FindService);
}

void ServiceLookup::FindService(const Call&, const ArgumentReader& in, ReplyWriter& out) {
    m_queries.Find(ReadCriteria(in.At(1)), in.Int(3), out);
}

} // namespace sim
