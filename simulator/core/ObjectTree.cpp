#include "ObjectTree.h"

#include <string_view>

#include <norvex/core/Marshalable.h>
#include <wire/Message.h>

#include "BranchView.h"

bool WriteObject(TIMarshalable& object, int tag, wire::Direction direction, int depth, wire::Buffer& buffer) {
    const std::size_t before = buffer.GetSize();
    if (depth >= wire::kMaxDepth || before + wire::kNodeHeaderSize > wire::kMaxTreeSize)
        return false;
    wire::TreeWriter writer(buffer);
    const std::size_t begin = writer.BeginBranch(static_cast<std::int16_t>(tag), direction);
    BranchView branch(buffer, depth + 1);
    if (!object.ClassToTree(branch)) {
        buffer.Truncate(before);
        return false;
    }
    writer.EndBranch(begin);
    return true;
}

bool ReadObject(const wire::Node& node, TIMarshalable& object) {
    if (!node.IsBranch())
        return false;
    unsigned long ownLength = 0;
    std::string_view text;
    if (object.GetSizeOfMarshalled(ownLength) && node.size > 0 && !wire::GetText(node, text))
        return false;
    BranchView branch(node);
    return object.TreeToClass(branch);
}
