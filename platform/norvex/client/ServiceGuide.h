#pragma once

#include <cstdint>

#include <norvex/client/NorvexSession.h>
#include <norvex/client/ProgramData.h>

// The programme guide.
class NORVEX_API IServiceGuide : public INorvexSession {
public:
    // The programme that a service shows now. 0 or below: not known.
    virtual int GetCurrentProgram(const std::uint64_t& serviceId, TCProgramData& program) = 0;
};
