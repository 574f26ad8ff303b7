#include <iostream>

#include <norvex/client/ReferenceCount.h>

#include "MenuText.h"
#include "SessionOwner.h"
#include "TPMSDebugMenu.h"

namespace {

constexpr char kTitle[] = "\t[Test1 List - Reference Count]\t\n";
constexpr char kItems[] = " 1. Call GetReferenceCount() \n";

} // namespace

void TCDebugMenuTPMS::m_PrintMenu_Test1_ReferenceCount() {
    std::cout << framedMenu(kTitle, kItems) << std::endl;
}

void TCDebugMenuTPMS::m_Start_Test1_ReferenceCount() {
    NorvexHandle handle;
    m_GetNorvexHandleByUserInput(&handle, false);
    TCSessionOwner<IReferenceCount> referenceCount;
    NorvexAPI::CreateReferenceCount(handle.profile, handle.screenId, referenceCount.out());

    while (true) {
        m_PrintMenu_Test1_ReferenceCount();
        const int command = m_SelectCmd("cmd> ");
        if (command == 1) {
            int count = -1;
            referenceCount->GetReferenceCount(&count);
            std::cout << "Reference count value is: " << count << std::endl;
        } else if (command == 99) {
            return;
        }
    }
}
