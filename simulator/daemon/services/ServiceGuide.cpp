#include <cinttypes>

#include "Context.h"
#include "Interface.h"
#include "Programmes.h"
#include "Results.h"
#include "ServiceComponents.h"
#include "ServiceLineUp.h"

namespace sim {

namespace {

// IServiceGuide: present programmes.
class ServiceGuide : public Interface {
public:
    using Method = interfaces::ServiceGuideMethod;

    ServiceGuide(Context& context, ServiceLineUp& lineUp, Programmes& programmes)
        : Interface(interfaces::kTable<Method>, Calls::ToSession), m_log(context.log), m_lineUp(lineUp),
          m_programmes(programmes) {
        Add(Method::GetCurrentProgram, {Out("status", kInt), In("service", kNumber64), Out("program", kProgramme)},
            &ServiceGuide::GetCurrentProgram);
    }

private:
    void GetCurrentProgram(const Call&, const ArgumentReader& in, ReplyWriter& out) {
        const std::uint64_t service = in.Number64(1);
        const auto programme = m_programmes.FindPresent(service);
        if (m_programmes.HasFailed())
            return out.Int(0, m_log.Refuse(kNotKept, kTunerTag, "GetCurrentProgram refused: the database failed"));
        if (!programme && !m_lineUp.FindFacts(service))
            return out.Int(
                0, m_log.Refuse(kUnknown, kTunerTag, "GetCurrentProgram refused: unknown service 0x%" PRIx64, service));
        // An unknown present programme is not a refusal.
        if (!programme)
            return out.Int(0, 0);
        out.Int(0, kDone);
        out.Value(2, *programme);
    }

    Log& m_log;
    ServiceLineUp& m_lineUp;
    Programmes& m_programmes;
};

} // namespace

void RegisterServiceGuide(Context& context, ServiceLineUp& lineUp, Programmes& programmes) {
    context.Register<ServiceGuide>(context, lineUp, programmes);
}

} // namespace sim
