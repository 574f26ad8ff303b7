#include "MarshalableValue.h"

#include <norvex/core/ClassToTreeFormatter.h>

namespace {

class BranchOfNodes final : public TCMarshalable {
public:
    explicit BranchOfNodes(const wire::Node& content) : m_content(content) {}

    bool ClassToTree(TCTreeBranch& branch) override { return AppendNodes(m_content, branch); }

private:
    const wire::Node& m_content;
};

} // namespace

bool AppendNodes(const wire::Node& content, TCTreeBranch& branch) {
    TCClassToTreeFormatter formatter(branch);
    wire::NodeCursor cursor(content);
    wire::Node node;
    while (cursor.Next(node)) {
        const int size = static_cast<int>(node.size);
        auto* data = const_cast<unsigned char*>(node.data); // only read
        if (node.IsBranch()) {
            BranchOfNodes child(node);
            formatter.PushMarshalableClass(node.tag, &child);
        } else if (node.kind == wire::NodeKind::Array) {
            formatter.PushArray(node.tag, size, 1, data);
        } else {
            formatter.PushValue(node.tag, size, data);
        }
    }
    return formatter.Extract();
}
