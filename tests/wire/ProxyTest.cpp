// Each operation of each interface is one call, with the number of its place, a session, and its
// arguments in order.

#include <functional>
#include <gtest/gtest.h>
#include <thread>

#include <norvex/client/AVControl.h>
#include <norvex/client/DataControl.h>
#include <norvex/client/NorvexAPI.h>
#include <norvex/client/PipelineUtility.h>
#include <norvex/client/ReferenceCount.h>
#include <norvex/client/ScanControl.h>
#include <norvex/client/Service.h>
#include <norvex/client/ServiceGuide.h>
#include <norvex/client/ServiceNavigation.h>
#include <norvex/client/SourceControl.h>
#include <norvex/client/TunerControl.h>
#include <norvex/client/VideoControl.h>
#include <norvex/client/ZoomControl.h>

#include "FakeService.h"

namespace {

constexpr std::uint32_t kSession = 17;

// In words: numbers by their size, texts and the branches of objects by their kind.
std::string Describe(const wire::Message& message) {
    std::string text = std::string(message.interfaceName) + "." + std::string(message.method) +
                       "/" + std::to_string(message.header.methodId) + "(";
    wire::NodeCursor cursor(message.tree, message.header.treeSize);
    wire::Node node;
    int place = 0;
    while (cursor.Next(node)) {
        EXPECT_EQ(node.tag, place);
        std::string_view content;
        text += place++ > 0 ? ", " : "";
        text += node.direction == wire::Direction::In ? "in " : "out ";
        if (wire::GetText(node, content))
            text += "'" + std::string(content) + "'";
        else if (node.IsBranch())
            text += "object " + std::to_string(node.size);
        else if (node.kind == wire::NodeKind::Value)
            text += std::to_string(node.size) + ":" +
                    std::to_string(node.size > 0 ? static_cast<signed char>(node.data[0]) : 0);
        else
            text += "length";
    }
    return text + ")";
}

class ProxyTest : public testing::Test {
protected:
    // Runs `use` against a service that answers each call with status 3 and what `fill` adds; the
    // calls but for the session's own, as they came.
    std::vector<std::string> CallsOf(const std::function<void()>& use,
                                     const std::function<void(wire::TreeWriter&)>& fill = {}) {
        std::vector<std::string> calls;
        std::thread far([&] {
            const auto connection = service.Accept();
            connection->Welcome();
            wire::Message message;
            while (connection->Receive(message)) {
                wire::Buffer tree;
                wire::TreeWriter writer(tree);
                if (message.method == "Open") {
                    opened = Describe(message);
                    writer.PutValue(0, std::int32_t{0});
                    writer.PutValue(1, kSession);
                } else if (message.method == "Close") {
                    closed = Describe(message);
                    writer.PutValue(0, std::int32_t{1});
                } else {
                    EXPECT_EQ(message.header.session, kSession);
                    calls.push_back(Describe(message));
                    writer.PutValue(0, std::int32_t{3});
                    if (fill)
                        fill(writer);
                }
                connection->Reply(message, tree);
            }
        });
        use();
        far.join();
        return calls;
    }

    template <class Interface>
    void Expect(const char* name, int (*create)(EProfile, int, Interface**),
                const std::vector<std::string>& expected,
                const std::function<void(Interface&)>& use,
                const std::function<void(wire::TreeWriter&)>& fill = {}) {
        const std::vector<std::string> calls = CallsOf(
            [&] {
                Interface* object = nullptr;
                ASSERT_EQ(create(PROFILE_PIP, 1, &object), 0);
                ASSERT_NE(object, nullptr);
                use(*object);
                EXPECT_EQ(NorvexAPI::Destroy(object), 0);
            },
            fill);
        const std::string prefix = std::string("com.holvi.") + name + ".";
        std::vector<std::string> full;
        for (const std::string& call : expected)
            full.push_back(prefix + call);
        EXPECT_EQ(calls, full);
        EXPECT_EQ(opened, std::string("com.holvi.INorvexSession.Open/0(out 4:-1, out 4:0, in '") +
                              "com.holvi." + name + "', in 4:101, in 4:1)");
        EXPECT_EQ(closed, "com.holvi.INorvexSession.Close/1(out 4:-1, in 4:17)");
    }

    FakeService service;
    Variable connectLimit{"NORVEX_CONNECT_LIMIT_MS", "20000"};
    Variable callLimit{"NORVEX_CALL_LIMIT_MS", "20000"};
    std::string opened;
    std::string closed;
};

} // namespace

TEST_F(ProxyTest, ReferenceCount) {
    int count = 5;
    Expect<IReferenceCount>(
        "IReferenceCount", NorvexAPI::CreateReferenceCount,
        {"GetReferenceCount/0(out 4:-1, out 4:5)"},
        [&](IReferenceCount& object) { EXPECT_EQ(object.GetReferenceCount(&count), 3); },
        [](wire::TreeWriter& writer) { writer.PutValue(1, std::int32_t{42}); });
    EXPECT_EQ(count, 42);
}

TEST_F(ProxyTest, AVControl) {
    Expect<IAVControl>("IAVControl", NorvexAPI::CreateAVControl,
                       {"RestartVideoDecoder/0(out 4:-1)", "MuteVideo/1(out 4:-1, in 4:5)",
                        "MuteAudio/2(out 4:-1, in 4:-6)"},
                       [](IAVControl& object) {
                           EXPECT_EQ(object.RestartVideoDecoder(), 3);
                           EXPECT_EQ(object.MuteVideo(5), 3);
                           EXPECT_EQ(object.MuteAudio(-6), 3);
                       });
}

TEST_F(ProxyTest, VideoControl) {
    int window = 7;
    Expect<IVideoControl>("IVideoControl", NorvexAPI::CreateVideoControl,
                          {"SetCropVideo/0(out 4:-1, in object 48, in object 48)",
                           "SetWindowId/1(out 4:-1, out 4:7)"},
                          [&](IVideoControl& object) {
                              EXPECT_EQ(object.SetCropVideo({1, 2, 3, 4}, {5, 6, 7, 8}), 3);
                              EXPECT_EQ(object.SetWindowId(&window), 3);
                          });
}

TEST_F(ProxyTest, TunerAndData) {
    Expect<ITunerControl>(
        "ITunerControl", NorvexAPI::CreateTunerControl, {"CheckTunerSignalState/0(out 4:-1)"},
        [](ITunerControl& object) { EXPECT_EQ(object.CheckTunerSignalState(), 3); });
    bool exists = false;
    Expect<IDataControl>(
        "IDataControl", NorvexAPI::CreateDataControl, {"CheckCaptionExist/0(out 4:-1, out 1:0)"},
        [&](IDataControl& object) { EXPECT_EQ(object.CheckCaptionExist(&exists), 3); },
        [](wire::TreeWriter& writer) { writer.PutValue(1, std::uint8_t{0x80}); });
    EXPECT_TRUE(exists) << "any byte but 0 is true";
}

TEST_F(ProxyTest, SourceControl) {
    Expect<ISourceControl>(
        "ISourceControl", NorvexAPI::CreateSourceControl,
        {"SetSource/0(out 4:-1, in 4:13, in '')", "SetSource/1(out 4:-1, in 4:0, in 8:45, in 't')",
         "PreSetSourceA/2(out 4:-1)", "StartHDMIAnalysis/3(out 4:-1, in 4:14)",
         "StopHDMIAnalysis/4(out 4:-1, in 4:15)", "PreSetSourceC/5(out 4:-1)",
         "PreSetSourceB/6(out 4:-1)", "SetPreviewSource/7(out 4:-1, in 4:47, in '')",
         "SetPreviewSource/8(out 4:-1, in 4:0, in 8:9, in '')"},
        [](ISourceControl& object) {
            std::string empty;
            std::string text = "t";
            EXPECT_EQ(object.SetSource(SOURCE_HDMI1, empty), 3);
            EXPECT_EQ(object.SetSource(SOURCE_TV, 0xfa0000000002002d, text), 3);
            EXPECT_EQ(object.PreSetSourceA(), 3);
            EXPECT_EQ(object.StartHDMIAnalysis(SOURCE_HDMI2), 3);
            EXPECT_EQ(object.StopHDMIAnalysis(SOURCE_HDMI3), 3);
            EXPECT_EQ(object.PreSetSourceC(), 3);
            EXPECT_EQ(object.PreSetSourceB(), 3);
            EXPECT_EQ(object.SetPreviewSource(SOURCE_HDMI8, empty), 3);
            EXPECT_EQ(object.SetPreviewSource(SOURCE_TV, 9, empty), 3);
        });
}

TEST_F(ProxyTest, PipelineUtility) {
    bool pending = false;
    TCTPMSStatus status;
    Expect<IPipelineUtility>(
        "IPipelineUtility", NorvexAPI::CreatePipelineUtility,
        {"NotifyReceiverState/0(out 4:-1, in 4:1, in 'r', in 4:1, in 8:-1)",
         "RegisterForStateChange/1(out 4:-1, in 4:0, in 'r', in 4:0)",
         "UnregisterFromStateChange/2(out 4:-1, in 4:1, in 'r')",
         "CheckPendingState/3(out 4:-1, in 4:0, out 1:0)",
         "GetCurrentTPMSStatus/4(out 4:-1, out object 16)",
         "NotifyReadyForSetService/5(out 4:-1, in 4:2, in 'app', in 4:1, in 8:6)"},
        [&](IPipelineUtility& object) {
            EXPECT_EQ(object.NotifyReceiverState(STATE_CHANGE_SOURCE, "r", 1, UINT64_MAX), 3);
            EXPECT_EQ(object.RegisterForStateChange(STATE_CHANGE_SERVICE, "r", 0), 3);
            EXPECT_EQ(object.UnregisterFromStateChange(STATE_CHANGE_SOURCE, "r"), 3);
            EXPECT_EQ(object.CheckPendingState(STATE_CHANGE_SERVICE, &pending), 3);
            EXPECT_EQ(object.GetCurrentTPMSStatus(&status), 3);
            EXPECT_EQ(object.NotifyReadyForSetService(2, "app", 1, 6), 3);
        });
}

TEST_F(ProxyTest, Services) {
    TCCriteriaHelper criteria;
    criteria.Where(13, 7);
    criteria.Fetch(12);
    TCServiceData record;
    const auto answer = [](wire::TreeWriter& writer) {
        const std::size_t begin = writer.BeginBranch(2);
        writer.PutValue(12, std::uint64_t{99});
        writer.EndBranch(begin);
    };
    // The service object is opened without a pipeline.
    const std::vector<std::string> calls = CallsOf(
        [&] {
            IService* object = nullptr;
            ASSERT_EQ(NorvexAPI::CreateService(&object), 0);
            EXPECT_EQ(object->FindService(criteria, record, 1), 3);
            NorvexAPI::Destroy(object);
        },
        answer);
    EXPECT_EQ(calls, (std::vector<std::string>{"com.holvi.IService.FindService/0(out 4:-1, in "
                                               "object 32, out object 0, in 4:1)"}));
    EXPECT_EQ(opened, "com.holvi.INorvexSession.Open/0(out 4:-1, out 4:0, in 'com.holvi.IService', "
                      "in 4:0, in 4:0)");
    EXPECT_EQ(*static_cast<const std::uint64_t*>(record.GetFieldTable()->Find(12)->GetData()), 99u);
}

TEST_F(ProxyTest, ServiceGuide) {
    TCProgramData program;
    const std::vector<std::string> calls = CallsOf([&] {
        IServiceGuide* object = nullptr;
        ASSERT_EQ(NorvexAPI::CreateServiceGuide(&object), 0);
        EXPECT_EQ(object->GetCurrentProgram(5, program), 3);
        NorvexAPI::Destroy(object);
    });
    EXPECT_EQ(calls, (std::vector<std::string>{
                         "com.holvi.IServiceGuide.GetCurrentProgram/0(out 4:-1, in 8:5, out object "
                         "28)"}));
}

TEST_F(ProxyTest, ServiceNavigation) {
    TSTvMode mode;
    unsigned long long id = ~0ull;
    Expect<IServiceNavigation>("IServiceNavigation", NorvexAPI::CreateServiceNavigation,
                               {"GetTvMode/0(out 4:-1, out object 24)",
                                "SetTvMode/2(out 4:-1, in object 24, in '')",
                                "SetTvMode/3(out 4:-1, in object 24, in 8:7, in '')",
                                "SetDTVMode/4(out 4:-1, in 4:3, in 1:1)",
                                "SetService/5(out 4:-1, in 8:7, in 4:1, in 4:2, in '')",
                                "SetBootupService/6(out 4:-1, in 8:7, in object 24, in 4:1)",
                                "GetLatestVeldaServiceId/7(out 4:-1, out 8:-1, in object 24)",
                                "GetLatestServiceId/8(out 4:-1, out 8:-1, in object 24)"},
                               [&](IServiceNavigation& object) {
                                   std::string text;
                                   EXPECT_EQ(object.GetTvMode(mode), 3);
                                   EXPECT_EQ(object.SetTvMode(mode, text), 3);
                                   EXPECT_EQ(object.SetTvMode(mode, 7, text), 3);
                                   EXPECT_EQ(object.SetDTVMode(DTV_MODE_ALL, true), 3);
                                   EXPECT_EQ(object.SetService(7, 1, 2, text), 3);
                                   EXPECT_EQ(object.SetBootupService(7, mode, 1), 3);
                                   EXPECT_EQ(object.GetLatestVeldaServiceId(&id, mode), 3);
                                   EXPECT_EQ(object.GetLatestServiceId(&id, mode), 3);
                               });
    EXPECT_EQ(id, ~0ull);
}

TEST_F(ProxyTest, ServiceLists) {
    TCCriteriaHelper criteria;
    std::list<TCServiceData*> records = {nullptr};
    Expect<IServiceNavigation>(
        "IServiceNavigation", NorvexAPI::CreateServiceNavigation,
        {"GetServiceList/1(out 4:-1, in object 16, out object 0, in object 24, in 4:0, in 4:0)"},
        [&](IServiceNavigation& object) {
            EXPECT_EQ(object.GetServiceList(criteria, records, {}, 0, 0), 3);
        },
        [](wire::TreeWriter& writer) {
            const std::size_t list = writer.BeginBranch(2);
            for (std::int16_t i = 0; i < 3; ++i) {
                const std::size_t record = writer.BeginBranch(i);
                if (i != 1)
                    writer.PutValue(12, std::uint64_t{100} + static_cast<std::uint64_t>(i));
                writer.PutValue(13, std::int32_t{i});
                writer.EndBranch(record);
            }
            writer.EndBranch(list);
        });
    ASSERT_EQ(records.size(), 4u) << "appended";
    records.pop_front();
    int place = 0;
    for (TCServiceData* record : records) {
        const TCServiceFieldTable* table = record->GetFieldTable();
        ASSERT_NE(table, nullptr);
        EXPECT_EQ(*static_cast<const std::int32_t*>(table->Find(13)->GetData()), place);
        if (place != 1) {
            EXPECT_EQ(*static_cast<const std::uint64_t*>(table->Find(12)->GetData()),
                      100u + static_cast<unsigned>(place));
        } else {
            EXPECT_EQ(table->Find(12), nullptr);
        }
        ++place;
        delete record;
    }
}

TEST_F(ProxyTest, AListWithABadRecordLeavesTheCallersListAsItWas) {
    TCCriteriaHelper criteria;
    std::list<TCServiceData*> records;
    CallsOf(
        [&] {
            IServiceNavigation* object = nullptr;
            ASSERT_EQ(NorvexAPI::CreateServiceNavigation(PROFILE_MAIN, 0, &object), 0);
            EXPECT_EQ(object->GetServiceList(criteria, records, {}, 0, 0), -1);
            NorvexAPI::Destroy(object);
        },
        [](wire::TreeWriter& writer) {
            const std::size_t list = writer.BeginBranch(2);
            for (std::int16_t i = 0; i < 3; ++i) {
                const std::size_t record = writer.BeginBranch(i);
                writer.PutLeaf(12, wire::NodeKind::Value, "12345678", i < 2 ? 8 : 5);
                writer.EndBranch(record);
            }
            writer.EndBranch(list);
        });
    EXPECT_TRUE(records.empty());
}

TEST_F(ProxyTest, ScanControl) {
    const std::list<std::pair<std::uint64_t, std::uint32_t>> services = {{1, 5}, {UINT64_MAX, 5}};
    const std::vector<std::string> calls = CallsOf([&] {
        IScanControl* object = nullptr;
        ASSERT_EQ(NorvexAPI::CreateScanControl(&object), 0);
        EXPECT_EQ(object->IsTuneAroundNeeded(services), 3);
        EXPECT_EQ(object->StartTuneAround(services, "DebugMenu"), 3);
        EXPECT_EQ(object->StopManualScan(), 3);
        EXPECT_EQ(object->IsBarkerChannelScanAvailable({}), 3);
        EXPECT_EQ(object->StartBarkerChannelScan("", {}), 3);
        EXPECT_EQ(object->StopBarkerChannelScan(), 3);
        NorvexAPI::Destroy(object);
    });
    const std::string prefix = "com.holvi.IScanControl.";
    EXPECT_EQ(calls, (std::vector<std::string>{
                         prefix + "IsTuneAroundNeeded/0(out 4:-1, in object 32)",
                         prefix + "StartTuneAround/1(out 4:-1, in object 32, in 'DebugMenu')",
                         prefix + "StopManualScan/2(out 4:-1)",
                         prefix + "IsBarkerChannelScanAvailable/3(out 4:-1, in object 24)",
                         prefix + "StartBarkerChannelScan/4(out 4:-1, in '', in object 24)",
                         prefix + "StopBarkerChannelScan/5(out 4:-1)"}));
}

TEST_F(ProxyTest, ZoomControl) {
    int window = -1;
    bool flag = false;
    int type = 0;
    std::vector<int> windows;
    Expect<IZoomControl>(
        "IZoomControl", NorvexAPI::CreateZoomControl,
        {"CreateZoomWindow/0(out 4:-1, out 4:-1, in object 48, in object 48, in object 48)",
         "DeleteZoomWindow/1(out 4:-1, in object 12, in object 48)",
         "SetZoomWindow/2(out 4:-1, in object 12, in 1:1)",
         "MuteZoomWindow/3(out 4:-1, in object 16, in 1:0)",
         "IsZoomWindowStarted/4(out 4:-1, in 4:4, out 1:0)",
         "IsZoomWindowMuted/5(out 4:-1, in 4:4, out 1:0)",
         "SetZoomWindowRect/6(out 4:-1, in 4:4, in object 48, in object 48, in object 48)",
         "IsZoomAvailable/7(out 4:-1, out 1:0)", "GetZoomSharingType/8(out 4:-1, out 4:0)",
         "GetConnectedZoomWindows/9(out 4:-1, out object 8)"},
        [&](IZoomControl& object) {
            const TSRectInfo rectangle(1, 2, 3, 4);
            EXPECT_EQ(object.CreateZoomWindow(window, rectangle, rectangle, rectangle), 3);
            EXPECT_EQ(object.DeleteZoomWindow({4}, rectangle), 3);
            EXPECT_EQ(object.SetZoomWindow({4}, true), 3);
            EXPECT_EQ(object.MuteZoomWindow({4, 5}, false), 3);
            EXPECT_EQ(object.IsZoomWindowStarted(4, flag), 3);
            EXPECT_EQ(object.IsZoomWindowMuted(4, flag), 3);
            EXPECT_EQ(object.SetZoomWindowRect(4, rectangle, rectangle, rectangle), 3);
            EXPECT_EQ(object.IsZoomAvailable(flag), 3);
            EXPECT_EQ(object.GetZoomSharingType(type), 3);
            EXPECT_EQ(object.GetConnectedZoomWindows(windows), 3);
        });
    CallsOf(
        [&] {
            IZoomControl* object = nullptr;
            ASSERT_EQ(NorvexAPI::CreateZoomControl(PROFILE_MAIN, 0, &object), 0);
            EXPECT_EQ(object->GetConnectedZoomWindows(windows), 3);
            NorvexAPI::Destroy(object);
        },
        [](wire::TreeWriter& writer) {
            const std::size_t begin = writer.BeginBranch(1);
            const std::int32_t numbers[] = {3, -4};
            writer.PutLeaf(0, wire::NodeKind::Array, numbers, sizeof numbers);
            writer.EndBranch(begin);
        });
    EXPECT_EQ(windows, (std::vector<int>{3, -4}));
}

TEST_F(ProxyTest, AFactoryHandsBackALiveObjectWithoutADaemon) {
    service.StopListening();
    ITunerControl* tuner = nullptr;
    EXPECT_EQ(NorvexAPI::CreateTunerControl(PROFILE_MAIN, 0, &tuner), 0);
    ASSERT_NE(tuner, nullptr);
    EXPECT_EQ(tuner->CheckTunerSignalState(), -1);
    service.Listen();
    EXPECT_EQ(CallsOf([&] {
                  EXPECT_EQ(tuner->CheckTunerSignalState(), 3);
                  NorvexAPI::Destroy(tuner);
              }).size(),
              1u);
}

TEST_F(ProxyTest, AFactoryFailsWhereARunningDaemonRefuses) {
    std::thread far([&] {
        const auto connection = service.Accept();
        connection->Welcome();
        wire::Message message;
        ASSERT_TRUE(connection->Receive(message));
        connection->Reply(message, -5);
        connection->AwaitEnd();
    });
    int placeholder = 0;
    auto* zoom = reinterpret_cast<IZoomControl*>(&placeholder);
    EXPECT_EQ(NorvexAPI::CreateZoomControl(PROFILE_MAIN, 0, &zoom), -5);
    EXPECT_EQ(zoom, nullptr);
    far.join();
    EXPECT_LT(NorvexAPI::CreateZoomControl(PROFILE_MAIN, 0, nullptr), 0);
    EXPECT_LT(NorvexAPI::Destroy(nullptr), 0);
}

TEST_F(ProxyTest, AFailedCallLeavesItsOutArgumentsAsTheyWere) {
    service.StopListening();
    IZoomControl* zoom = nullptr;
    ASSERT_EQ(NorvexAPI::CreateZoomControl(PROFILE_MAIN, 0, &zoom), 0);
    bool flag = true;
    int type = 6;
    std::vector<int> windows = {1, 2};
    EXPECT_EQ(zoom->IsZoomAvailable(flag), -1);
    EXPECT_EQ(zoom->GetZoomSharingType(type), -1);
    EXPECT_EQ(zoom->GetConnectedZoomWindows(windows), -1);
    EXPECT_TRUE(flag);
    EXPECT_EQ(type, 6);
    EXPECT_EQ(windows.size(), 2u);
    NorvexAPI::Destroy(zoom);
}
