#include <sstream>

#include <gtest/gtest.h>

#include "DebugMenu.h"
#include "DriverTest.h"
#include "GstPluginDebug.h"
#include "QuarleDebugMenu.h"
#include "Timeline.h"

namespace {

std::vector<std::string> calls;
std::string globals;

} // namespace

const std::vector<std::string>& callsAtLoad() {
    return calls;
}

const std::string& globalsAtLoad() {
    return globals;
}

int main(int argc, char** argv) {
    calls = Timeline::now().calls();
    std::ostringstream text;
    text << currentMenu << ' ' << QuarleLogonOff << ' ' << StatusForquarleDebug << ' '
         << m_child_Pid;
    globals = text.str();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
