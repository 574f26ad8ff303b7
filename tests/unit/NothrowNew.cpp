#include "NothrowNew.h"

#include <cstddef>
#include <new>

namespace {

bool exhausted = false;

} // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (exhausted)
        return nullptr;
    try {
        return ::operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

NoMemory::NoMemory() {
    exhausted = true;
}

NoMemory::~NoMemory() {
    exhausted = false;
}
