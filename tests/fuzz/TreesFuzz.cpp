// A tree, by the cursor that both ends use and by the branches that the marshalling library shows
// to objects. A tree that is found whole is written again from its nodes, byte by byte the same.

#include <vector>

#include <norvex/core/Marshalable.h>
#include <norvex/core/MessageBuffer.h>
#include <norvex/core/NodeCreator.h>
#include <norvex/core/TreeBranch.h>
#include <norvex/core/TreeToClassFormatter.h>
#include <wire/Tree.h>

#include "Require.h"

namespace {

// False where a node is broken, has a direction, or stands too deep.
bool Rewrite(wire::NodeCursor cursor, int depth, wire::TreeWriter& writer) {
    wire::Node node;
    while (cursor.Next(node)) {
        if (node.direction != wire::Direction::Out)
            return false;
        const std::size_t before = writer.GetBuffer().GetSize();
        if (node.IsBranch()) {
            const std::size_t begin = writer.BeginBranch(node.tag);
            if (depth == wire::kMaxDepth || !Rewrite(wire::NodeCursor(node), depth + 1, writer))
                return false;
            writer.EndBranch(begin);
        } else {
            writer.PutLeaf(node.tag, node.kind, node.data, node.size);
        }
        std::string_view text;
        if (wire::GetText(node, text)) {
            REQUIRE(text.size() <= node.size);
            // A child's tag is not looked at in a text; the rest is one form only.
            wire::Buffer again;
            wire::TreeWriter(again).PutText(node.tag, text);
            REQUIRE(again.GetSize() == writer.GetBuffer().GetSize() - before);
        }
    }
    return !cursor.IsMalformed();
}

// Reads whatever a branch shows, in each way that an object may ask for it.
class Explorer : public TCMarshalable {
public:
    bool TreeToClass(TCTreeBranch& branch) override {
        TCMarshalableNodeCreator objects;
        DefaultNodeCreator plain;
        int sum = 0;
        for (TCTreeNode* node = branch.GetFirstChild(); node != nullptr; node = branch.GetNextChild()) {
            const int size = node->GetSize();
            sum += size;
            REQUIRE(sum <= branch.GetSize());
            std::vector<unsigned char> content(static_cast<std::size_t>(size) + 1, 0xA5);
            REQUIRE(!node->CopyTo(content.data(), size + 1) && content[0] == 0xA5);
            REQUIRE(node->CopyTo(content.data(), size) && content.back() == 0xA5);
            REQUIRE(node->GetElementCount(4) == size / 4);
            std::uint32_t number = 7;
            if (!plain.FillElement(&number, 4, 4, node))
                REQUIRE(number == 7);
            Explorer inner;
            objects.FillElement(&inner, sizeof inner, sizeof inner, node);
            count += inner.count + 1;
        }
        TCTreeToClassFormatter formatter(branch);
        for (short tag = -1; tag < 3; ++tag) {
            std::uint64_t number = 7;
            if (!formatter.PushValue(tag, sizeof number, &number))
                REQUIRE(number == 7);
            unsigned char bytes[3] = {1, 2, 3};
            if (!formatter.PushLengthArray(tag, 2, bytes, nullptr))
                REQUIRE(bytes[0] == 1 && bytes[1] == 2);
            REQUIRE(bytes[2] == 3);
        }
        formatter.FillOut();
        return true;
    }
    std::size_t count = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    wire::Buffer written;
    wire::TreeWriter writer(written);
    const bool isWhole = Rewrite(wire::NodeCursor(data, size), 0, writer);
    REQUIRE(isWhole == wire::IsWellFormed(data, size));
    if (isWhole)
        REQUIRE(written.GetSize() == size && (size == 0 || std::memcmp(written.GetData(), data, size) == 0));

    TCMessageBuffer buffer;
    buffer.Append(data, size);
    Explorer explorer;
    if (!explorer.Load(&buffer))
        REQUIRE(explorer.count == 0 || isWhole);
    REQUIRE(explorer.count <= size / wire::kNodeHeaderSize);
    return 0;
}
