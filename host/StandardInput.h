#pragma once

#include "WordSource.h"

#include <array>
#include <cstddef>

namespace host {

// Words from a descriptor (standard input) that somebody else owns: in blocks, yet without waiting
// for a full one, so that a user's line and a pipe's hundred thousand words are both there as soon
// as they can be. An error is the end.
class TCStandardInput : public IWordSource {
public:
    explicit TCStandardInput(int descriptor) : m_Descriptor(descriptor) {}

    std::string_view Next() override;

private:
    static constexpr std::size_t kBlock = std::size_t{64} * 1024; // what a pipe holds

    int m_Descriptor;
    std::array<char, kBlock> m_Block;
};

} // namespace host
