#pragma once

#include <cstdint>
#include <string>

#include <norvex/client/NorvexSession.h>
#include <norvex/client/Source.h>

// Which input a pipeline shows.
class NORVEX_API ISourceControl : public INorvexSession {
public:
    virtual int SetSource(ESource source, std::string& text) = 0;
    virtual int SetSource(ESource source, std::uint64_t serviceId, std::string& text) = 0;
    virtual int PreSetSourceA() = 0;
    virtual int StartHDMIAnalysis(ESource source) = 0;
    virtual int StopHDMIAnalysis(ESource source) = 0;
    virtual int PreSetSourceC() = 0;
    virtual int PreSetSourceB() = 0;
    // Exactly 1: success.
    virtual int SetPreviewSource(ESource source, std::string& text) = 0;
    virtual int SetPreviewSource(ESource source, std::uint64_t serviceId, std::string& text) = 0;
};
