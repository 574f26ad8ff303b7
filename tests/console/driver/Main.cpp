#include <gtest/gtest.h>

#include "DriverTest.h"
#include "Timeline.h"

namespace {

std::vector<std::string>& atLoad() {
    static std::vector<std::string> calls;
    return calls;
}

} // namespace

const std::vector<std::string>& callsAtLoad() {
    return atLoad();
}

int main(int argc, char** argv) {
    atLoad() = Timeline::now().calls();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
