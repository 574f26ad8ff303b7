#pragma once

#include <zarn/DebugPrintControl.h>

// Hands out the one debug print control of the process: every caller gets the same. Not
// synchronised: used on the console's thread, and at load and unload.
class DebugServiceAPI {
public:
    // Stores the control, created by the first call, in `ppControl`. Always 0. DebugServiceAPI owns
    // the control.
    static int CreateService(IDebugPrintControl** ppControl);
    // Deletes the control, if there is one; pointers handed out earlier dangle from then on. Always
    // 0.
    static int Destroy();

private:
    static IDebugPrintControl* m_pInstance;
};
