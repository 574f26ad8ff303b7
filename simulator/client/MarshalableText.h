#pragma once

#include <string>

#include <norvex/core/Marshalable.h>

// Lets a text travel: its length (tag 0), then its bytes (tag 1), which an empty one does without.
// Made around the caller's text for the length of a call.
class MarshalableText final : public TCMarshalable {
public:
    // A const text is only ever written.
    explicit MarshalableText(const std::string& text) : m_text(const_cast<std::string*>(&text)) {}

    bool GetSizeOfMarshalled(unsigned long& size) override;
    bool ClassToTree(TCTreeBranch& branch) override;
    bool TreeToClass(TCTreeBranch& branch) override;

private:
    std::string* m_text;
};
