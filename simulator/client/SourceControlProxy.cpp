#include "SourceControlProxy.h"

#include "MarshalableText.h"

int SourceControlProxy::SetSource(ESource source, std::string& text) {
    RemoteCall call(GetSession());
    call.In(source);
    MarshalableText textArgument(text);
    call.InObject(textArgument);
    return call.Make("SetSource", 0);
}

int SourceControlProxy::SetSource(ESource source, std::uint64_t serviceId, std::string& text) {
    RemoteCall call(GetSession());
    call.In(source);
    call.In(serviceId);
    MarshalableText textArgument(text);
    call.InObject(textArgument);
    return call.Make("SetSource", 1);
}

int SourceControlProxy::PreSetSourceA() {
    RemoteCall call(GetSession());
    return call.Make("PreSetSourceA", 2);
}

int SourceControlProxy::StartHDMIAnalysis(ESource source) {
    RemoteCall call(GetSession());
    call.In(source);
    return call.Make("StartHDMIAnalysis", 3);
}

int SourceControlProxy::StopHDMIAnalysis(ESource source) {
    RemoteCall call(GetSession());
    call.In(source);
    return call.Make("StopHDMIAnalysis", 4);
}

int SourceControlProxy::PreSetSourceC() {
    RemoteCall call(GetSession());
    return call.Make("PreSetSourceC", 5);
}

int SourceControlProxy::PreSetSourceB() {
    RemoteCall call(GetSession());
    return call.Make("PreSetSourceB", 6);
}

int SourceControlProxy::SetPreviewSource(ESource source, std::string& text) {
    RemoteCall call(GetSession());
    call.In(source);
    MarshalableText textArgument(text);
    call.InObject(textArgument);
    return call.Make("SetPreviewSource", 7);
}

int SourceControlProxy::SetPreviewSource(ESource source, std::uint64_t serviceId,
                                         std::string& text) {
    RemoteCall call(GetSession());
    call.In(source);
    call.In(serviceId);
    MarshalableText textArgument(text);
    call.InObject(textArgument);
    return call.Make("SetPreviewSource", 8);
}
