#include <norvex/client/TvMode.h>

#include <norvex/core/ClassToTreeFormatter.h>
#include <norvex/core/TreeToClassFormatter.h>

TSTvMode::TSTvMode() : TSTvMode(ANTENNA_NONE, SERVICE_MODE_NONE) {}

TSTvMode::TSTvMode(EAntennaMode antennaMode, EServiceMode serviceMode)
    : m_antennaMode(antennaMode), m_serviceMode(serviceMode) {}

TSTvMode::TSTvMode(const TSTvMode& other) = default;

TSTvMode& TSTvMode::operator=(const TSTvMode& other) = default;

TSTvMode::~TSTvMode() = default;

bool TSTvMode::ClassToTree(TCTreeBranch& branch) {
    TCClassToTreeFormatter formatter(branch);
    formatter.PushValue(0, sizeof m_antennaMode, &m_antennaMode);
    formatter.PushValue(1, sizeof m_serviceMode, &m_serviceMode);
    return formatter.Extract();
}

bool TSTvMode::TreeToClass(TCTreeBranch& branch) {
    TCTreeToClassFormatter formatter(branch);
    formatter.PushValue(0, sizeof m_antennaMode, &m_antennaMode);
    formatter.PushValue(1, sizeof m_serviceMode, &m_serviceMode);
    return formatter.FillOut();
}
