#pragma once

#include <norvex/core/Export.h>
#include <norvex/core/Marshalable.h>

// One programme of the guide.
class NORVEX_API TCProgramData : public TCMarshalable {
public:
    TCProgramData();
    ~TCProgramData() override;
    TCProgramData(const TCProgramData&) = delete;
    TCProgramData& operator=(const TCProgramData&) = delete;

    // Copies the title, UTF-16 without a terminator, to `buffer`. `length`: in, the capacity in
    // 16-bit units; out, the units written (a longer title is cut). False, and nothing written,
    // when there is no title.
    bool Title(unsigned short* buffer, unsigned int* length) const;

    bool ClassToTree(TCTreeBranch& branch) override;
    bool TreeToClass(TCTreeBranch& branch) override;
};
