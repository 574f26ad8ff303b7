#include <gtest/gtest.h>
#include <zarn/DebugServiceAPI.h>

#include "FakeConnection.h"
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
        Timeline::Now().Clear();
    }
    ~DebugService() override { DebugServiceAPI::Destroy(); }

    static IDebugPrintControl* Create(IDebugPrintControl* before = nullptr) {
        EXPECT_EQ(DebugServiceAPI::CreateService(&before), 0);
        return before;
    }
};

} // namespace

TEST_F(DebugService, TwoCallersGetTheSameControl) {
    IDebugPrintControl* control = Create();
    EXPECT_NE(control, nullptr);
    EXPECT_EQ(Create(), control);
    EXPECT_EQ(Create(reinterpret_cast<IDebugPrintControl*>(0x10)), control) << "what the pointer held is overwritten";
    EXPECT_EQ(Timeline::Now().Calls(), Calls{kOpened}) << "one control, one connection";
}

TEST_F(DebugService, ControlAddressesTheDebugPrintControlInterface) {
    IDebugPrintControl* control = Create();
    Timeline::Now().Clear();
    control->Stop();
    EXPECT_EQ(Timeline::Now().Calls(),
              Calls{"Exchange(com.holvi.IDebugPrintControl, Stop, 2, false; out value ffffffff)"});
}

TEST_F(DebugService, SecondDestroyDoesNothing) {
    Create();
    EXPECT_EQ(DebugServiceAPI::Destroy(), 0);
    EXPECT_EQ(Timeline::Now().Calls(), (Calls{kOpened, "~NorvexAPIConnection"}));
    EXPECT_EQ(DebugServiceAPI::Destroy(), 0);
    EXPECT_EQ(Timeline::Now().Calls(), (Calls{kOpened, "~NorvexAPIConnection"}));
}

TEST_F(DebugService, DestroyWithoutAControlIsZero) {
    EXPECT_EQ(DebugServiceAPI::Destroy(), 0);
    EXPECT_EQ(Timeline::Now().Calls(), Calls{});
}

TEST_F(DebugService, CreateAfterDestroyMakesANewControl) {
    Create();
    DebugServiceAPI::Destroy();
    EXPECT_NE(Create(), nullptr);
    EXPECT_EQ(Timeline::Now().Calls(), (Calls{kOpened, "~NorvexAPIConnection", kOpened}));
}

TEST_F(DebugService, SucceedsAlsoWithoutAConnection) {
    testing::internal::CaptureStdout();
    IDebugPrintControl* control = nullptr;
    {
        NoMemory noMemory;
        control = Create();
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "ASSERT!!! - function TCDebugPrintControlProxy, line 20");
    ASSERT_NE(control, nullptr);
    EXPECT_EQ(FakeConnection::CountAlive(), 0);
    EXPECT_EQ(control->Stop(), -1);
}
