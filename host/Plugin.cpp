#include "Plugin.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include <dlfcn.h>
#include <link.h>

namespace host {

namespace {

const char kDefaultLibrary[] = "libzarn-debugmenu.so";

// The one built or installed with this program, else the one that the loader finds.
std::string DefaultLibrary() {
    std::error_code failure;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", failure);
    const std::filesystem::path installed = program.parent_path().parent_path() / "lib" / kDefaultLibrary;
    if (!failure && std::filesystem::exists(installed, failure)) {
        return installed.string();
    }
    return kDefaultLibrary;
}

std::string LoaderReason() {
    // The text belongs to the calling thread.
    const char* const message = ::dlerror(); // NOLINT(concurrency-mt-unsafe)
    std::string reason = message ? message : "unknown reason";
    std::replace(reason.begin(), reason.end(), '\n', ' ');
    return reason;
}

} // namespace

Plugin::~Plugin() {
    Close();
}

bool Plugin::Load(const std::string& library, const std::string& entry, std::string& reason) {
    const std::string file = library.empty() ? DefaultLibrary() : library;
    m_handle = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_handle) {
        reason = "cannot load the plug-in: " + LoaderReason();
        return false;
    }
    m_entry = reinterpret_cast<void (*)()>(::dlsym(m_handle, entry.c_str()));
    if (!m_entry) {
        reason = "the plug-in " + file + " has no entry " + entry;
        return false;
    }
    return true;
}

std::string Plugin::GetFile() const {
    link_map* library = nullptr;
    return ::dlinfo(m_handle, RTLD_DI_LINKMAP, &library) == 0 ? library->l_name : "";
}

void Plugin::Close() {
    if (m_handle) {
        ::dlclose(m_handle);
        m_handle = nullptr;
        m_entry = nullptr;
    }
}

} // namespace host
