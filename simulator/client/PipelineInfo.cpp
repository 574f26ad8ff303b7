#include <norvex/client/TPMSStatus.h>

namespace {

using EventTimes = std::map<ESIEvent, unsigned long long>;

EventTimes& GetTimes(void* state) {
    return *static_cast<EventTimes*>(state);
}

} // namespace

TCPipelineInfo::TCPipelineInfo() : m_pState(new EventTimes) {}

TCPipelineInfo::TCPipelineInfo(const TCPipelineInfo& other)
    : m_pState(new EventTimes(GetTimes(other.m_pState))) {}

TCPipelineInfo& TCPipelineInfo::operator=(const TCPipelineInfo& other) {
    if (this != &other)
        GetTimes(m_pState) = GetTimes(other.m_pState);
    return *this;
}

TCPipelineInfo::~TCPipelineInfo() {
    delete &GetTimes(m_pState);
}

const std::map<ESIEvent, unsigned long long>& TCPipelineInfo::GetEventTimes() const {
    return GetTimes(m_pState);
}

void TCPipelineInfo::SetEventTime(ESIEvent event, unsigned long long milliseconds) {
    GetTimes(m_pState)[event] = milliseconds;
}
