// The pipeline test console without its tests: on the time line stand "TCDebugMenuTPMS" where one
// is constructed and "TCDebugMenuTPMS::Enter" where it is entered.

#include "DriverTest.h"
#include "TPMSDebugMenu.h"
#include "Timeline.h"

namespace {

const void* g_entered = nullptr;

} // namespace

const void* GetLastEnteredTestConsole() {
    return g_entered;
}

TCDebugMenuTPMS::TCDebugMenuTPMS() : m_pSignalSubscriber(nullptr) {
    static_cast<void>(m_pSignalSubscriber);
    Timeline::Now().Call("TCDebugMenuTPMS");
}

void TCDebugMenuTPMS::Enter() {
    g_entered = this;
    Timeline::Now().Call("TCDebugMenuTPMS::Enter");
}
