#include <norvex/client/RectInfo.h>

#include <norvex/core/ClassToTreeFormatter.h>
#include <norvex/core/TreeToClassFormatter.h>

TSRectInfo::TSRectInfo() : TSRectInfo(0, 0, 0, 0) {}

// NOLINTNEXTLINE(bugprone-easily-swappable-parameters): a rectangle's usual order.
TSRectInfo::TSRectInfo(int x, int y, int width, int height)
    : m_x(x), m_y(y), m_width(width), m_height(height) {}

TSRectInfo::TSRectInfo(const TSRectInfo& other) = default;

TSRectInfo& TSRectInfo::operator=(const TSRectInfo& other) = default;

TSRectInfo::~TSRectInfo() = default;

bool TSRectInfo::ClassToTree(TCTreeBranch& branch) {
    TCClassToTreeFormatter formatter(branch);
    formatter.PushValue(0, sizeof m_x, &m_x);
    formatter.PushValue(1, sizeof m_y, &m_y);
    formatter.PushValue(2, sizeof m_width, &m_width);
    formatter.PushValue(3, sizeof m_height, &m_height);
    return formatter.Extract();
}

bool TSRectInfo::TreeToClass(TCTreeBranch& branch) {
    TCTreeToClassFormatter formatter(branch);
    formatter.PushValue(0, sizeof m_x, &m_x);
    formatter.PushValue(1, sizeof m_y, &m_y);
    formatter.PushValue(2, sizeof m_width, &m_width);
    formatter.PushValue(3, sizeof m_height, &m_height);
    return formatter.FillOut();
}
