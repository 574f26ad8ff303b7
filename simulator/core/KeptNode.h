#pragma once

#include <wire/Buffer.h>
#include <wire/Tree.h>

#include "BranchView.h"

// The one node that a creator has returned, with its bytes.
struct KeptNode {
    wire::Buffer bytes;
    BranchView view{wire::Node{}};

    // Points the view at `bytes` from `begin` on.
    TCTreeNode* Show(int tag, wire::NodeKind kind, std::size_t begin) {
        wire::Node node;
        node.kind = kind;
        node.data = bytes.GetData() + begin;
        node.size = static_cast<std::uint32_t>(bytes.GetSize() - begin);
        view.GetState().Read(node);
        view.GetState().tag = tag;
        return &view;
    }
};

// The private state of a creator.
inline KeptNode& GetKept(void* state) {
    return *static_cast<KeptNode*>(state);
}
