#include "Interface.h"
#include "ServiceComponents.h"
#include "ServiceQueries.h"

namespace sim {

namespace {

// IService: looks up services by criteria.
class ServiceLookup : public Interface {
public:
    using Method = interfaces::ServiceMethod;

    explicit ServiceLookup(ServiceQueries& queries)
        : Interface(interfaces::kTable<Method>, Calls::ToSession), m_queries(queries) {
        Add(Method::FindService,
            {Out("status", kInt), In("criteria", kCriteria), Out("record", kRecord), In("count", kInt)},
            &ServiceLookup::FindService);
    }

private:
    void FindService(const Call&, const ArgumentReader& in, ReplyWriter& out) {
        m_queries.Find(in.Value<values::Criteria>(1), in.Int(3), out);
    }

    ServiceQueries& m_queries;
};

} // namespace

void RegisterServiceLookup(Context& context, ServiceQueries& queries) {
    context.Register<ServiceLookup>(queries);
}

} // namespace sim
