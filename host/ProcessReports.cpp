#include "ProcessReports.h"

#if defined(__SANITIZE_ADDRESS__)
#define HOST_FINDS_LEAKS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define HOST_FINDS_LEAKS 1
#endif
#endif

#ifdef HOST_FINDS_LEAKS
#include <sanitizer/lsan_interface.h>
#endif

#ifdef ZARN_COVERAGE
#include <dlfcn.h>
#include <link.h>
#endif

#ifdef ZARN_COVERAGE
namespace {

// Each library counts for itself, and its own copy of this function writes what it has counted.
void WriteCoverage() {
    link_map* object = nullptr;
    if (::dlinfo(::dlopen(nullptr, RTLD_LAZY), RTLD_DI_LINKMAP, &object) != 0) {
        return;
    }
    for (; object; object = object->l_next) {
        void* const library = ::dlopen(object->l_name, RTLD_LAZY | RTLD_NOLOAD);
        if (library) {
            if (void* const dump = ::dlsym(library, "__gcov_dump")) {
                reinterpret_cast<void (*)()>(dump)();
            }
        }
    }
}

} // namespace

// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the compiler's name.
extern "C" void __gcov_dump();
#endif

namespace host {

void WriteProcessReports() {
#ifdef ZARN_COVERAGE
    __gcov_dump();
    WriteCoverage();
#endif
#ifdef HOST_FINDS_LEAKS
    __lsan_do_leak_check();
#endif
}

} // namespace host
