#include <norvex/client/NorvexAPI.h>
#include <norvex/client/SourceControl.h>

#include "SessionProxy.h"

namespace {

class SourceControlProxy final
    : public SessionProxy<ISourceControl, interfaces::SourceControlMethod> {
public:
    using SessionProxy::SessionProxy;

    int SetSource(ESource source, std::string& text) override {
        RemoteCall call(GetSession());
        call.In(source);
        call.In(text);
        return call.Make(Method::SetSource);
    }

    int SetSource(ESource source, std::uint64_t serviceId, std::string& text) override {
        RemoteCall call(GetSession());
        call.In(source);
        call.In(serviceId);
        call.In(text);
        return call.Make(Method::SetSource_Service);
    }

    int PreSetSourceA() override {
        RemoteCall call(GetSession());
        return call.Make(Method::PreSetSourceA);
    }

    int StartHDMIAnalysis(ESource source) override {
        RemoteCall call(GetSession());
        call.In(source);
        return call.Make(Method::StartHDMIAnalysis);
    }

    int StopHDMIAnalysis(ESource source) override {
        RemoteCall call(GetSession());
        call.In(source);
        return call.Make(Method::StopHDMIAnalysis);
    }

    int PreSetSourceC() override {
        RemoteCall call(GetSession());
        return call.Make(Method::PreSetSourceC);
    }

    int PreSetSourceB() override {
        RemoteCall call(GetSession());
        return call.Make(Method::PreSetSourceB);
    }

    int SetPreviewSource(ESource source, std::string& text) override {
        RemoteCall call(GetSession());
        call.In(source);
        call.In(text);
        return call.Make(Method::SetPreviewSource);
    }

    int SetPreviewSource(ESource source, std::uint64_t serviceId, std::string& text) override {
        RemoteCall call(GetSession());
        call.In(source);
        call.In(serviceId);
        call.In(text);
        return call.Make(Method::SetPreviewSource_Service);
    }
};

} // namespace

int NorvexAPI::CreateSourceControl(EProfile profile, int screen, ISourceControl** sourceControl) {
    return CreateSession<SourceControlProxy>(profile, screen, sourceControl);
}
