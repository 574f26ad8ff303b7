#pragma once

#include <string>

#include <norvex/core/Marshalable.h>

// Marshals a text: created on the stack around the caller's string for one call. Does not own the
// string. A string that is only sent is wrapped through a cast; it is not written to.
class TCMarshalableString : public TCMarshalable {
public:
    // `data` must outlive the wrapper. A null one is reported when the wrapper is written or read,
    // and then crashes it.
    explicit TCMarshalableString(std::string* data);
    ~TCMarshalableString() override;

    // Length of the text in bytes; false for a null one.
    bool GetSizeOfMarshalled(unsigned long& size) override;
    bool ClassToTree(TCTreeBranch& branch) override;
    // Replaces the text. An empty text in the tree leaves the old one in place.
    bool TreeToClass(TCTreeBranch& branch) override;

private:
    std::string* m_data;
};
