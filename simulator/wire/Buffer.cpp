#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <utility>

#include <wire/Buffer.h>

namespace wire {

Buffer::~Buffer() {
    std::free(m_data);
}

Buffer::Buffer(Buffer&& other) noexcept
    : m_data(std::exchange(other.m_data, nullptr)), m_size(std::exchange(other.m_size, 0)),
      m_capacity(std::exchange(other.m_capacity, 0)) {}

Buffer& Buffer::operator=(Buffer&& other) noexcept {
    std::swap(m_data, other.m_data);
    std::swap(m_size, other.m_size);
    std::swap(m_capacity, other.m_capacity);
    return *this;
}

void Buffer::ClearAndTrim(std::size_t limit) {
    m_size = 0;
    if (m_capacity > limit) {
        std::free(m_data);
        m_data = nullptr;
        m_capacity = 0;
    }
}

void Buffer::Grow(std::size_t size) {
    if (size > SIZE_MAX - m_size)
        throw std::bad_alloc();
    const std::size_t doubled = m_capacity > SIZE_MAX / 2 ? SIZE_MAX : m_capacity * 2;
    const std::size_t capacity = std::max({m_size + size, doubled, std::size_t{512}});
    void* grown = std::realloc(m_data, capacity);
    if (grown == nullptr)
        throw std::bad_alloc();
    m_data = static_cast<unsigned char*>(grown);
    m_capacity = capacity;
}

} // namespace wire
