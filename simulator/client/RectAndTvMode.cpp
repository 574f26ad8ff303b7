#include <norvex/client/RectInfo.h>
#include <norvex/client/TvMode.h>
#include <values/Values.h>

#include "MarshalableValue.h"

TSRectInfo::TSRectInfo() : TSRectInfo(0, 0, 0, 0) {}

// NOLINTNEXTLINE(bugprone-easily-swappable-parameters): a rectangle's usual order.
TSRectInfo::TSRectInfo(int x, int y, int width, int height) : m_x(x), m_y(y), m_width(width), m_height(height) {}

TSRectInfo::TSRectInfo(const TSRectInfo& other) = default;

TSRectInfo& TSRectInfo::operator=(const TSRectInfo& other) = default;

TSRectInfo::~TSRectInfo() = default;

bool TSRectInfo::ClassToTree(TCTreeBranch& branch) {
    return WriteValue(branch, values::Rect{m_x, m_y, m_width, m_height});
}

bool TSRectInfo::TreeToClass(TCTreeBranch& branch) {
    values::Rect rect{m_x, m_y, m_width, m_height};
    const bool read = ReadValue(branch, rect);
    *this = TSRectInfo(rect.x, rect.y, rect.width, rect.height);
    return read;
}

TSTvMode::TSTvMode() : TSTvMode(ANTENNA_NONE, SERVICE_MODE_NONE) {}

TSTvMode::TSTvMode(EAntennaMode antennaMode, EServiceMode serviceMode)
    : m_antennaMode(antennaMode), m_serviceMode(serviceMode) {}

TSTvMode::TSTvMode(const TSTvMode& other) = default;

TSTvMode& TSTvMode::operator=(const TSTvMode& other) = default;

TSTvMode::~TSTvMode() = default;

bool TSTvMode::ClassToTree(TCTreeBranch& branch) {
    return WriteValue(branch, values::TvMode{m_antennaMode, m_serviceMode});
}

bool TSTvMode::TreeToClass(TCTreeBranch& branch) {
    values::TvMode tvMode{m_antennaMode, m_serviceMode};
    const bool read = ReadValue(branch, tvMode);
    m_antennaMode = static_cast<EAntennaMode>(tvMode.antenna);
    m_serviceMode = static_cast<EServiceMode>(tvMode.serviceMode);
    return read;
}
