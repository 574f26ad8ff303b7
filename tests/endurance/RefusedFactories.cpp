// Intercepts three of the client library's factories: the program's definitions come first for the
// libraries that it loads. REFUSED_FACTORY names the one that refuses; the others go on to the
// library's.

#include <cstdlib>
#include <cstring>

#include <dlfcn.h>

#include <norvex/client/NorvexAPI.h>

namespace {

bool IsRefused(const char* factory) {
    static const char* const refused = std::getenv("REFUSED_FACTORY");
    return refused != nullptr && std::strcmp(refused, factory) == 0;
}

template <class Function> Function* FindNext(const char* symbol) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, symbol));
}

} // namespace

int NorvexAPI::CreateServiceNavigation(EProfile profile, int screen, IServiceNavigation** navigation) {
    if (IsRefused("CreateServiceNavigation")) {
        *navigation = nullptr;
        return -1;
    }
    static auto* const next = FindNext<decltype(NorvexAPI::CreateServiceNavigation)>(
        "_ZN9NorvexAPI23CreateServiceNavigationE8EProfileiPP18IServiceNavigation");
    return next(profile, screen, navigation);
}

int NorvexAPI::CreateSourceControl(EProfile profile, int screen, ISourceControl** sourceControl) {
    if (IsRefused("CreateSourceControl")) {
        *sourceControl = nullptr;
        return -1;
    }
    static auto* const next = FindNext<decltype(NorvexAPI::CreateSourceControl)>(
        "_ZN9NorvexAPI19CreateSourceControlE8EProfileiPP14ISourceControl");
    return next(profile, screen, sourceControl);
}

int NorvexAPI::CreateServiceGuide(IServiceGuide** serviceGuide) {
    if (IsRefused("CreateServiceGuide")) {
        *serviceGuide = nullptr;
        return -1;
    }
    static auto* const next =
        FindNext<decltype(NorvexAPI::CreateServiceGuide)>("_ZN9NorvexAPI18CreateServiceGuideEPP13IServiceGuide");
    return next(serviceGuide);
}
