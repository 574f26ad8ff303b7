#include "FakeTPMS.h"

#include "TPMSDebugMenu.h"
#include "Timeline.h"

namespace {

const void* entered = nullptr;

} // namespace

const void* FakeTPMS::lastEntered() {
    return entered;
}

TCDebugMenuTPMS::TCDebugMenuTPMS() : m_pSignalSubscriber(nullptr) {
    static_cast<void>(m_pSignalSubscriber);
    Timeline::now().call("TCDebugMenuTPMS");
}

void TCDebugMenuTPMS::Enter() {
    entered = this;
    Timeline::now().call("TCDebugMenuTPMS::Enter");
}
