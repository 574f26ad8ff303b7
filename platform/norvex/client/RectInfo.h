#pragma once

#include <norvex/core/Export.h>
#include <norvex/core/Marshalable.h>

// A rectangle in pixels. A value.
class NORVEX_API TSRectInfo : public TCMarshalable {
public:
    // All zero.
    TSRectInfo();
    TSRectInfo(int x, int y, int width, int height);
    TSRectInfo(const TSRectInfo& other);
    TSRectInfo& operator=(const TSRectInfo& other);
    ~TSRectInfo() override;

    bool ClassToTree(TCTreeBranch& branch) override;
    bool TreeToClass(TCTreeBranch& branch) override;

    int m_x;
    int m_y;
    int m_width;
    int m_height;
};
