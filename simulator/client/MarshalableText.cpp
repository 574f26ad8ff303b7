#include "MarshalableText.h"

#include <norvex/core/ClassToTreeFormatter.h>
#include <norvex/core/TreeToClassFormatter.h>

bool MarshalableText::GetSizeOfMarshalled(unsigned long& size) {
    size = m_text->size();
    return true;
}

bool MarshalableText::ClassToTree(TCTreeBranch& branch) {
    TCClassToTreeFormatter formatter(branch);
    int length = static_cast<int>(m_text->size());
    formatter.PushValue(0, sizeof length, &length);
    if (length != 0)
        formatter.PushLengthArray(1, length, m_text->data(), nullptr);
    return formatter.Extract();
}

// The branch is a text's, or empty: the marshalling library has seen to that.
bool MarshalableText::TreeToClass(TCTreeBranch& branch) {
    TCTreeToClassFormatter formatter(branch);
    int length = 0;
    formatter.PushValue(0, sizeof length, &length);
    m_text->resize(static_cast<std::size_t>(length));
    if (length != 0)
        formatter.PushLengthArray(1, length, m_text->data(), nullptr);
    return formatter.FillOut();
}
