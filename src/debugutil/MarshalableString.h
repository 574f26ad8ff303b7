#pragma once

#include <string>

#include <norvex/core/Marshalable.h>

// Lets a text travel: made on the stack around the caller's string for the length of one call. Does
// not own the string. A string that is only sent is wrapped through a cast; it is not written to.
class TCMarshalableString : public TCMarshalable {
public:
    // `data` must outlive the wrapper. A null one is reported when the wrapper is written or read,
    // and is nothing that it survives.
    explicit TCMarshalableString(std::string* data);
    ~TCMarshalableString() override;

    // Length of the text in bytes; false for a null one.
    bool GetSizeOfMarshalled(unsigned long& size) override;
    bool ClassToTree(TCTreeBranch& branch) override;
    // Replaces the text. An empty text in the tree leaves the old one standing.
    bool TreeToClass(TCTreeBranch& branch) override;

private:
    std::string* m_data;
};
