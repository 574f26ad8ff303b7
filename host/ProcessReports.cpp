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

#ifdef __SANITIZE_THREAD__
#include <atomic>
#endif

#ifdef ZARN_COVERAGE
#include <dlfcn.h>
#include <link.h>
#endif

#ifdef __SANITIZE_THREAD__
namespace {

std::atomic<bool> raceReported = false;

constexpr int kRaceStatus = 66; // the thread sanitizer's own

} // namespace

// Called by the thread sanitizer with each report. It would turn them into a status in an exit
// handler only.
extern "C" __attribute__((visibility("default"))) void __tsan_on_report(void*);
void __tsan_on_report(void*) {
    raceReported = true;
}
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

extern "C" void __gcov_dump();
#endif

namespace host {

int WriteProcessReports(int status) {
#ifdef ZARN_COVERAGE
    __gcov_dump();
    WriteCoverage();
#endif
#ifdef __SANITIZE_THREAD__
    if (raceReported) {
        return kRaceStatus;
    }
#endif
#ifdef HOST_FINDS_LEAKS
    __lsan_do_leak_check(); // ends the process itself where it finds one
#endif
    return status;
}

} // namespace host
