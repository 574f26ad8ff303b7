#include <algorithm>

#include <dlfcn.h>

#include <base/DeviceLog.h>
#include <norvex/core/DebugMenuUtility.h>

bool TCDebugMenuUtility::IsNumber(const std::string& text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char character) { return character >= '0' && character <= '9'; });
}

bool TCDebugMenuUtility::OpenLibrary(const char* path, const char* entry) {
    if (path == nullptr || entry == nullptr)
        return false;
    void* library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        // Its text belongs to the calling thread.
        const char* const reason = dlerror(); // NOLINT(concurrency-mt-unsafe)
        devicelog::Print("norvex-core", "cannot open the library %s: %s", path, reason);
        return false;
    }
    void* address = dlsym(library, entry);
    if (address == nullptr)
        devicelog::Print("norvex-core", "the library %s has no function %s", path, entry);
    else
        reinterpret_cast<void (*)()>(address)();
    dlclose(library);
    return address != nullptr;
}
