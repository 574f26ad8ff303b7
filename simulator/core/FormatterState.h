#pragma once

#include <cstdint>

#include "BranchView.h"

// A formatter's one pointer: its branch and, in the lowest bit that an address never has, whether a
// push has failed. A formatter is made for every object that travels, so it allocates nothing.
class FormatterState {
public:
    // `state` is the formatter's own pointer.
    explicit FormatterState(void*& state) : m_state(state) {}

    static void* For(TCTreeBranch& branch) { return &GetBranchState(branch); }

    BranchState& GetBranch() const { return *reinterpret_cast<BranchState*>(GetBits() & ~kFailed); }
    bool HasFailed() const { return (GetBits() & kFailed) != 0; }
    // Hands `worked` on, and remembers when it is false.
    bool Note(bool worked) {
        if (!worked)
            m_state = reinterpret_cast<void*>(GetBits() | kFailed);
        return worked;
    }

private:
    static constexpr std::uintptr_t kFailed = 1;
    std::uintptr_t GetBits() const { return reinterpret_cast<std::uintptr_t>(m_state); }

    void*& m_state;
};
