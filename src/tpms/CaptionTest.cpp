#include <iostream>

#include <norvex/client/DataControl.h>

#include "SessionOwner.h"
#include "TPMSDebugMenu.h"

void TCDebugMenuTPMS::m_Start_Test16_CheckCaptionExistTest() {
    std::cout << "Check Caption exist" << std::endl;
    TCSessionOwner<IDataControl> dataControl;
    NorvexAPI::CreateDataControl(PROFILE_MAIN, 0, dataControl.out());
    bool exists = false;
    dataControl->CheckCaptionExist(&exists);
    std::cout << "Caption exist:" << exists << std::endl;
}
