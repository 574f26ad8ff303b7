#pragma once

#include <cstddef>
#include <cstdint>

class TCTreeBranch;

// The fields of one service record, in the order in which they came: what stands behind
// TCServiceFieldTable. One block of memory holds them all.
class ServiceFields {
public:
    struct Field {
        int tag;
        // Bytes of the value: 8 for the service id, 4 for any other, 0 for a field without one.
        int size;
        union {
            std::uint64_t wide;
            std::int32_t number;
        } value;
    };

    // How many fields the branch holds, and how many bytes they take here.
    static std::size_t Count(TCTreeBranch& branch);
    static std::size_t GetBlockSize(std::size_t count);
    // Reads the branch's fields, `count` by Count, into memory of that size. Null when one of them
    // is no field's value.
    static ServiceFields* Read(TCTreeBranch& branch, std::size_t count, void* memory);

    const Field* begin() const { return reinterpret_cast<const Field*>(this + 1); }
    const Field* end() const { return begin() + m_count; }

private:
    explicit ServiceFields(std::size_t count) : m_count(count) {}

    alignas(Field) std::size_t m_count;
};
