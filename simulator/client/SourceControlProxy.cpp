#include <norvex/client/NorvexAPI.h>
#include <norvex/client/SourceControl.h>

#include "SessionProxy.h"

namespace {

class SourceControlProxy final : public SessionProxy<ISourceControl, interfaces::SourceControlMethod> {
public:
    using SessionProxy::SessionProxy;

    int SetSource(ESource source, std::string& text) override {
        return Call(Method::SetSource).In(source).In(text).Make();
    }

    int SetSource(ESource source, std::uint64_t serviceId, std::string& text) override {
        return Call(Method::SetSource_Service).In(source).In(serviceId).In(text).Make();
    }

    int PreSetSourceA() override { return Call(Method::PreSetSourceA).Make(); }

    int StartHDMIAnalysis(ESource source) override { return Call(Method::StartHDMIAnalysis).In(source).Make(); }

    int StopHDMIAnalysis(ESource source) override { return Call(Method::StopHDMIAnalysis).In(source).Make(); }

    int PreSetSourceC() override { return Call(Method::PreSetSourceC).Make(); }

    int PreSetSourceB() override { return Call(Method::PreSetSourceB).Make(); }

    int SetPreviewSource(ESource source, std::string& text) override {
        return Call(Method::SetPreviewSource).In(source).In(text).Make();
    }

    int SetPreviewSource(ESource source, std::uint64_t serviceId, std::string& text) override {
        return Call(Method::SetPreviewSource_Service).In(source).In(serviceId).In(text).Make();
    }
};

} // namespace

int NorvexAPI::CreateSourceControl(EProfile profile, int screen, ISourceControl** sourceControl) {
    return CreateSession<SourceControlProxy>(profile, screen, sourceControl);
}
