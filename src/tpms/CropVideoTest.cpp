#include <norvex/client/RectInfo.h>
#include <norvex/client/VideoControl.h>

#include "SessionOwner.h"
#include "TPMSDebugMenu.h"

void TCDebugMenuTPMS::m_Start_Test15_SetCropVideoTest() {
    const TSRectInfo first(540, 380, 100, 100);
    const TSRectInfo second(1520, 680, 400, 400);
    TCSessionOwner<IVideoControl> videoControl;
    NorvexAPI::CreateVideoControl(PROFILE_CROP, 0, videoControl.out());
    videoControl->SetCropVideo(first, second);
}
