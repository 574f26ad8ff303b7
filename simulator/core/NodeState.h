#pragma once

#include <cstddef>
#include <wire/Tree.h>

// What stands behind a node's opaque pointer. It lives in the object that made the node, so that a
// node costs no allocation of its own.
struct NodeState {
    wire::NodeKind kind = wire::NodeKind::Value;
    // Asked for with -1: the branch that takes the node numbers it.
    int tag = 0;
    // Made by `new` for whoever appends it; every other node is kept by its maker.
    bool isOwnedByTaker = false;
    // The content; of a branch that is being written, see BranchState.
    const unsigned char* data = nullptr;
    std::size_t size = 0;
};
