#include "NothrowNew.h"

#include <cstddef>
#include <new>

namespace {

bool g_exhausted = false;

} // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (g_exhausted)
        return nullptr;
    try {
        return ::operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

NoMemory::NoMemory() {
    g_exhausted = true;
}

NoMemory::~NoMemory() {
    g_exhausted = false;
}
