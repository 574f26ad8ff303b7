#include <iostream>

#include <norvex/client/ServiceNavigation.h>

#include "SessionOwner.h"
#include "TPMSDebugMenu.h"

bool TCDebugMenuTPMS::m_SetBootupService() {
    IServiceNavigation* created = nullptr;
    if (NorvexAPI::CreateServiceNavigation(PROFILE_MAIN, 0, &created) != 0) {
        std::cout << "CreateServiceNavigation failed" << std::endl;
        return false;
    }
    TCSessionOwner<IServiceNavigation> navigation(created);

    const auto major = static_cast<std::uint16_t>(m_SelectCmd("major> "));
    if (major == 0xFFFF) {
        // Kept alive, here and below: only a boot-up service that was set destroys it.
        navigation.release();
        return false;
    }
    // Not judged: the id for no service is handed on as it is.
    const std::uint64_t serviceId = m_GetServiceId(major);
    if (navigation->SetBootupService(serviceId, TSTvMode(), 0) <= 0) {
        std::cout << " SetBootupService failed!";
        navigation.release();
        return false;
    }
    return true;
}
