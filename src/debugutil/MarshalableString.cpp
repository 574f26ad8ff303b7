#include "MarshalableString.h"

#include <cstddef>
#include <utility>

#include <norvex/core/Assert.h>
#include <norvex/core/ClassToTreeFormatter.h>
#include <norvex/core/TreeBranch.h>
#include <norvex/core/TreeToClassFormatter.h>

namespace {

// The name and the lines below are what people search the log for; they don't follow the source.
constexpr char kAssertFile[] = "norvex-api-internal/MarshalableString";

constexpr short kLengthTag = 0;
constexpr short kBytesTag = 1;

// A text up to this length is always allocated. A longer one must at least fit into the branch that
// claims to hold it: a malformed length must not allocate gigabytes.
constexpr int kUnquestionedLength = 65536;

bool IsCredible(int length, const TCTreeBranch& branch) {
    return length >= 0 && (length <= kUnquestionedLength || length <= branch.GetSize());
}

} // namespace

TCMarshalableString::TCMarshalableString(std::string* data) : m_data(data) {}

TCMarshalableString::~TCMarshalableString() = default;

bool TCMarshalableString::GetSizeOfMarshalled(unsigned long& size) {
    if (m_data == nullptr)
        return false;
    size = m_data->size();
    return true;
}

bool TCMarshalableString::ClassToTree(TCTreeBranch& branch) {
    if (m_data == nullptr)
        _TCApiAssert("m_data", kAssertFile, 72, nullptr);

    TCClassToTreeFormatter formatter(branch);
    // cppcheck-suppress nullPointerRedundantCheck ; reported above; the call goes on regardless.
    int length = static_cast<int>(m_data->size());
    formatter.PushValue(kLengthTag, sizeof(length), &length);
    if (length != 0)
        formatter.PushLengthArray(kBytesTag, length, m_data->data(), nullptr);
    return formatter.Extract();
}

bool TCMarshalableString::TreeToClass(TCTreeBranch& branch) {
    if (m_data == nullptr)
        _TCApiAssert("m_data", kAssertFile, 93, nullptr);

    TCTreeToClassFormatter formatter(branch);
    int length = 0;
    formatter.PushValue(kLengthTag, sizeof(length), &length);
    if (!IsCredible(length, branch))
        return false;
    if (length != 0) {
        std::string bytes(static_cast<std::size_t>(length), '\0');
        if (formatter.PushLengthArray(kBytesTag, length, bytes.data(), nullptr))
            *m_data = std::move(bytes);
    } else {
        // Meant: an empty text does not clear what the target held.
        m_data->reserve(1);
    }
    return formatter.FillOut();
}
