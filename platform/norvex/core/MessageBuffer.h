#pragma once

#include <cstddef>

#include <norvex/core/Export.h>

// A growable byte buffer: an argument tree for the middleware, or its reply.
//
// One owner, one thread at a time. Growing may throw std::bad_alloc.
class NORVEX_API TCMessageBuffer {
public:
    TCMessageBuffer();
    ~TCMessageBuffer();
    TCMessageBuffer(const TCMessageBuffer&) = delete;
    TCMessageBuffer& operator=(const TCMessageBuffer&) = delete;

    // The bytes; valid until the buffer grows, is cleared or destroyed. Null while it is empty.
    const void* GetData() const;
    // Length in bytes.
    std::size_t GetSize() const;
    // Copies `size` bytes from `data` to the end.
    void Append(const void* data, std::size_t size);
    // Adds `size` bytes at the end and returns where they begin; the caller fills them in.
    void* Extend(std::size_t size);
    // Empties it; the memory is kept for the next message.
    void Clear();

private:
    void* m_pState;
};
