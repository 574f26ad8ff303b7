#include "Plugin.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include <dlfcn.h>

namespace host {

namespace {

const char kDefaultLibrary[] = "libzarn-debugmenu.so";

// The one that was built or installed together with this program, else whatever the loader knows.
std::string DefaultLibrary() {
    std::error_code failure;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", failure);
    const std::filesystem::path beside =
        program.parent_path().parent_path() / "lib" / kDefaultLibrary;
    if (!failure && std::filesystem::exists(beside, failure)) {
        return beside.string();
    }
    return kDefaultLibrary;
}

std::string LoaderReason() {
    // Its text is the calling thread's own.
    const char* const message = ::dlerror(); // NOLINT(concurrency-mt-unsafe)
    std::string reason = message ? message : "unknown reason";
    std::replace(reason.begin(), reason.end(), '\n', ' ');
    return reason;
}

} // namespace

TCPlugin::~TCPlugin() {
    Close();
}

bool TCPlugin::Load(const std::string& library, const std::string& entry, std::string& reason) {
    const std::string file = library.empty() ? DefaultLibrary() : library;
    m_Handle = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_Handle) {
        reason = "cannot load the plug-in: " + LoaderReason();
        return false;
    }
    m_Entry = reinterpret_cast<void (*)()>(::dlsym(m_Handle, entry.c_str()));
    if (!m_Entry) {
        reason = "the plug-in " + file + " has no entry " + entry;
        return false;
    }
    return true;
}

void TCPlugin::Close() {
    if (m_Handle) {
        ::dlclose(m_Handle);
        m_Handle = nullptr;
        m_Entry = nullptr;
    }
}

} // namespace host
