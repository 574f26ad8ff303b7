#include "MarshalableServiceCodes.h"

#include <cstring>
#include <vector>

#include <norvex/core/ClassToTreeFormatter.h>

bool MarshalableServiceCodes::ClassToTree(TCTreeBranch& branch) {
    constexpr int kSize = 12;
    std::vector<unsigned char> packed(m_services.size() * kSize);
    unsigned char* place = packed.data();
    for (const auto& [serviceId, code] : m_services) {
        std::memcpy(place, &serviceId, sizeof serviceId);
        std::memcpy(place + sizeof serviceId, &code, sizeof code);
        place += kSize;
    }
    TCClassToTreeFormatter formatter(branch);
    formatter.PushArray(0, static_cast<int>(m_services.size()), kSize, packed.data());
    return formatter.Extract();
}
