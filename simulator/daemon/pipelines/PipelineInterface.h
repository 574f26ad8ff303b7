#pragma once

#include "Context.h"
#include "Interface.h"
#include "Pipelines.h"

namespace sim {

// An interface whose sessions each belong to one pipeline and keep it alive.
class PipelineInterface : public Interface {
public:
    PipelineInterface(const interfaces::InterfaceTable& table, Context& context, Pipelines& pipelines)
        : Interface(table, Calls::ToSession), m_log(context.log), m_pipelines(pipelines) {}

    std::int32_t OpenSession(Session& session) override;
    void CloseSession(Session& session) override;

protected:
    static Handle HandleOf(const Call& call) { return {call.session->profile, call.session->screen}; }
    // The call's pipeline, to be read or to be changed. Valid until the end of the call.
    const Pipeline& PipelineOf(const Call& call) const { return m_pipelines.Get(HandleOf(call)); }
    Pipeline& ToChange(const Call& call) { return m_pipelines.At(HandleOf(call)); }

    Log& m_log;
    Pipelines& m_pipelines;
};

} // namespace sim
