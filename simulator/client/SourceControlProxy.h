#pragma once

#include <norvex/client/SourceControl.h>

#include "SessionProxy.h"

class SourceControlProxy final : public SessionProxy<ISourceControl> {
public:
    using SessionProxy::SessionProxy;

    int SetSource(ESource source, std::string& text) override;
    int SetSource(ESource source, std::uint64_t serviceId, std::string& text) override;
    int PreSetSourceA() override;
    int StartHDMIAnalysis(ESource source) override;
    int StopHDMIAnalysis(ESource source) override;
    int PreSetSourceC() override;
    int PreSetSourceB() override;
    int SetPreviewSource(ESource source, std::string& text) override;
    int SetPreviewSource(ESource source, std::uint64_t serviceId, std::string& text) override;
};
