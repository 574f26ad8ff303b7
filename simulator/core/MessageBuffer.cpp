#include <norvex/core/MessageBuffer.h>
#include <wire/Buffer.h>

namespace {

// Memory of a huge message is freed when the next one begins.
constexpr std::size_t kKeptMemory = 2u << 20;

wire::Buffer& Bytes(void* state) {
    return *static_cast<wire::Buffer*>(state);
}

} // namespace

TCMessageBuffer::TCMessageBuffer() : m_pState(new wire::Buffer) {}

TCMessageBuffer::~TCMessageBuffer() {
    delete &Bytes(m_pState);
}

const void* TCMessageBuffer::GetData() const {
    return GetSize() > 0 ? Bytes(m_pState).GetData() : nullptr;
}

std::size_t TCMessageBuffer::GetSize() const {
    return Bytes(m_pState).GetSize();
}

void TCMessageBuffer::Append(const void* data, std::size_t size) {
    Bytes(m_pState).Append(data, size);
}

void* TCMessageBuffer::Extend(std::size_t size) {
    return Bytes(m_pState).Extend(size);
}

void TCMessageBuffer::Clear() {
    Bytes(m_pState).ClearAndTrim(kKeptMemory);
}
