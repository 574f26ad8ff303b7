#pragma once

#include <cstddef>

#include <wire/Tree.h>

// The state behind a node's opaque pointer. It is stored in the object that created the node, so
// that a node needs no allocation.
struct NodeState {
    wire::NodeKind kind = wire::NodeKind::Value;
    // Created with tag -1: the branch to which the node is appended numbers it.
    int tag = 0;
    // Created by `new` for the branch to which it is appended; every other node belongs to its
    // creator.
    bool isOwnedByTaker = false;
    // The content; for a branch that is being written see BranchState.
    const unsigned char* data = nullptr;
    std::size_t size = 0;
};
