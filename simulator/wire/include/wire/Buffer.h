#pragma once

#include <cstddef>
#include <cstring>

namespace wire {

// A growable buffer that keeps its memory from one message to the next and never clears what will
// be overwritten. One owner, one thread at a time. Growing throws std::bad_alloc.
class Buffer {
public:
    Buffer() = default;
    ~Buffer();
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    Buffer(Buffer&& other) noexcept;
    Buffer& operator=(Buffer&& other) noexcept;

    unsigned char* GetData() { return m_data; }
    const unsigned char* GetData() const { return m_data; }
    std::size_t GetSize() const { return m_size; }
    std::size_t GetCapacity() const { return m_capacity; }

    // Adds `size` uninitialized bytes and returns their start.
    unsigned char* Extend(std::size_t size) {
        if (size > m_capacity - m_size)
            Grow(size);
        unsigned char* place = m_data + m_size;
        m_size += size;
        return place;
    }
    void Append(const void* data, std::size_t size) {
        if (size > 0)
            std::memcpy(Extend(size), data, size);
    }
    // Truncates it to its first `size` bytes; never grows it.
    void Truncate(std::size_t size) {
        if (size < m_size)
            m_size = size;
    }
    void Clear() { m_size = 0; }
    // Clears it and, if it has grown beyond `limit`, frees the memory, so that one huge message
    // does not occupy it.
    void ClearAndTrim(std::size_t limit);

private:
    void Grow(std::size_t size);

    unsigned char* m_data = nullptr;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};

} // namespace wire
