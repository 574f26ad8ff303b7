#include "PipelineInterface.h"

#include "Results.h"

namespace sim {

std::int32_t PipelineInterface::OpenSession(Session& session) {
    return m_pipelines.Hold({session.profile, session.screen}) ? 0 : kTooMany;
}

void PipelineInterface::CloseSession(Session& session) {
    m_pipelines.Release({session.profile, session.screen});
}

} // namespace sim
