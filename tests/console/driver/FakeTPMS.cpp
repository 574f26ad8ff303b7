// The pipeline test console without its tests: on the time line stand "TCDebugMenuTPMS" where one
// is constructed and "TCDebugMenuTPMS::Enter" where the console's own is entered.

#include "DebugMenu.h"
#include "Timeline.h"

TCDebugMenuTPMS::TCDebugMenuTPMS() : m_pSignalSubscriber(nullptr) {
    static_cast<void>(m_pSignalSubscriber);
    Timeline::Now().Call("TCDebugMenuTPMS");
}

void TCDebugMenuTPMS::Enter() {
    Timeline::Now().Call(this == &debugMenuTPMS ? "TCDebugMenuTPMS::Enter" : "Enter of another");
}
