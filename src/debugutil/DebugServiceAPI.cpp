#include <zarn/DebugServiceAPI.h>

#include "DebugPrintControlProxy.h"

IDebugPrintControl* DebugServiceAPI::m_pInstance = nullptr;

int DebugServiceAPI::CreateService(IDebugPrintControl** ppControl) {
    if (m_pInstance == nullptr)
        m_pInstance = new TCDebugPrintControlProxy("com.holvi.IDebugPrintControl");
    *ppControl = m_pInstance;
    return 0;
}

int DebugServiceAPI::Destroy() {
    if (m_pInstance != nullptr) {
        delete m_pInstance;
        m_pInstance = nullptr;
    }
    return 0;
}
