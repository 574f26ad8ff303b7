#pragma once

#include <cstdint>

#include "BranchView.h"

// A formatter's one pointer: its branch and, in the lowest bit that an address never has, whether a
// push has failed. A formatter is created for every object sent or received, so it allocates
// nothing.
class FormatterState {
public:
    // `state` is the formatter's opaque pointer.
    explicit FormatterState(void*& state) : m_state(state) {}

    static void* For(TCTreeBranch& branch) { return &GetBranchState(branch); }

    BranchState& GetBranch() const { return *static_cast<BranchState*>(HasFailed() ? Moved(-kFailed) : m_state); }
    bool HasFailed() const { return (reinterpret_cast<std::uintptr_t>(m_state) & kFailed) != 0; }
    // Returns `worked`, and remembers if it is false.
    bool Note(bool worked) {
        if (!worked && !HasFailed())
            m_state = Moved(kFailed);
        return worked;
    }

private:
    static constexpr int kFailed = 1;
    void* Moved(int bytes) const { return static_cast<char*>(m_state) + bytes; }

    void*& m_state;
};
