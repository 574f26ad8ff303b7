#include "MarshalableIntegers.h"

#include <norvex/core/ClassToTreeFormatter.h>

#include "ArrayChild.h"

bool MarshalableIntegers::ClassToTree(TCTreeBranch& branch) {
    TCClassToTreeFormatter formatter(branch);
    formatter.PushArray(0, static_cast<int>(m_numbers.size()), sizeof(int), m_numbers.data());
    return formatter.Extract();
}

bool MarshalableIntegers::TreeToClass(TCTreeBranch& branch) {
    const TCTreeNode* node = branch.GetFirstChild();
    return node == nullptr || ReadElements(*node, m_numbers);
}
