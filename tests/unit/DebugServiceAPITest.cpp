#include <gtest/gtest.h>

#include <zarn/DebugServiceAPI.h>

#include "FakeConnection.h"
#include "FakeCore.h"
#include "NothrowNew.h"
#include "Timeline.h"

namespace {

using Calls = std::vector<std::string>;

const char kOpened[] = "NorvexAPIConnection(com.holvi.Norvex.SignalIFace, "
                       "/com/holvi/Norvex/SignalObject, true)";

class DebugService : public testing::Test {
protected:
    DebugService() {
        DebugServiceAPI::Destroy();
        Timeline::now().clear();
    }
    ~DebugService() override { DebugServiceAPI::Destroy(); }
};

} // namespace

TEST_F(DebugService, TwoCallersGetTheSameControl) {
    IDebugPrintControl* first = nullptr;
    IDebugPrintControl* second = nullptr;
    EXPECT_EQ(DebugServiceAPI::CreateService(&first), 0);
    EXPECT_EQ(DebugServiceAPI::CreateService(&second), 0);
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(first, second);
    EXPECT_EQ(Timeline::now().calls(), Calls{kOpened}) << "one control, one connection";
}

TEST_F(DebugService, ControlAddressesTheDebugPrintControlInterface) {
    IDebugPrintControl* control = nullptr;
    DebugServiceAPI::CreateService(&control);
    Timeline::now().clear();
    control->Stop();
    EXPECT_EQ(Timeline::now().calls(),
              Calls{"Run(connection, com.holvi.IDebugPrintControl, Stop, 2, false; out value 4 = "
                    "ffffffff)"});
}

TEST_F(DebugService, OverwritesWhatThePointerHeld) {
    IDebugPrintControl* control = nullptr;
    DebugServiceAPI::CreateService(&control);
    IDebugPrintControl* other = reinterpret_cast<IDebugPrintControl*>(0x10);
    DebugServiceAPI::CreateService(&other);
    EXPECT_EQ(other, control);
}

TEST_F(DebugService, SecondDestroyDoesNothing) {
    IDebugPrintControl* control = nullptr;
    DebugServiceAPI::CreateService(&control);
    Timeline::now().clear();
    EXPECT_EQ(DebugServiceAPI::Destroy(), 0);
    EXPECT_EQ(Timeline::now().calls(), Calls{"~NorvexAPIConnection"});
    EXPECT_EQ(DebugServiceAPI::Destroy(), 0);
    EXPECT_EQ(Timeline::now().calls(), Calls{"~NorvexAPIConnection"});
}

TEST_F(DebugService, DestroyWithoutAControlIsZero) {
    EXPECT_EQ(DebugServiceAPI::Destroy(), 0);
    EXPECT_TRUE(Timeline::now().calls().empty());
}

TEST_F(DebugService, CreateAfterDestroyMakesANewControl) {
    IDebugPrintControl* control = nullptr;
    DebugServiceAPI::CreateService(&control);
    DebugServiceAPI::Destroy();
    control = nullptr;
    EXPECT_EQ(DebugServiceAPI::CreateService(&control), 0);
    EXPECT_NE(control, nullptr);
    EXPECT_EQ(Timeline::now().calls(), (Calls{kOpened, "~NorvexAPIConnection", kOpened}));
}

TEST_F(DebugService, SucceedsAlsoWithoutAConnection) {
    testing::internal::CaptureStdout();
    IDebugPrintControl* control = nullptr;
    {
        NoMemory noMemory;
        EXPECT_EQ(DebugServiceAPI::CreateService(&control), 0);
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "ASSERT!!! - function TCDebugPrintControlProxy, line 20");
    ASSERT_NE(control, nullptr);
    EXPECT_EQ(FakeConnection::alive(), 0);
    EXPECT_EQ(control->Stop(), -1);
}
