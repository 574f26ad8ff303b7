// The mute test of the console as it ships, with a control of sound and picture that answers at
// once: what remains is the console's own work.

#include <fstream>
#include <iostream>

#include <norvex/client/AVControl.h>
#include <norvex/client/NorvexAPI.h>

#include "TPMSDebugMenu.h"

namespace {

class SilentAVControl final : public IAVControl {
public:
    int RestartVideoDecoder() override { return 1; }
    int MuteVideo(int) override { return 1; }
    int MuteAudio(int) override { return 1; }
};

} // namespace

// In place of the client library's: a program's own definitions come first.
int NorvexAPI::CreateAVControl(EProfile, int, IAVControl** avControl) {
    *avControl = new SilentAVControl;
    return 0;
}
int NorvexAPI::Destroy(INorvexSession* session) {
    delete session;
    return 1;
}

int main() {
    // std::cin is block-buffered, as in the host.
    std::filebuf input;
    if (input.open("/dev/stdin", std::ios::in) == nullptr)
        return 1;
    std::cin.rdbuf(&input);
    TCDebugMenuTPMS().m_Start_Test2_MuteControl();
    std::cin.rdbuf(nullptr);
    return 0;
}
