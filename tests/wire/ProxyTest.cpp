// Each operation of each interface is one call, with its name and number, a session, and its
// arguments in order.

#include <functional>
#include <thread>

#include <gtest/gtest.h>
#include <interfaces/Interfaces.h>
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

using namespace interfaces;

constexpr std::uint32_t kSession = 17;

// "in 4:-1" for a number by its size, "out object 16" for a branch of 16 bytes.
std::string Describe(const wire::Message& message) {
    std::string text;
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
    return std::string(message.interfaceName) + "." + std::string(message.method) + "/" +
           std::to_string(message.header.methodId) + "(" + text + ")";
}

// The same, of an operation with these arguments after its status.
template <class Method> std::string Describe(Method method, const std::string& arguments) {
    return std::string(kTable<Method>.name) + "." + std::string(GetMethodName(method)) + "/" +
           std::to_string(static_cast<int>(method)) + "(out 4:-1" + (arguments.empty() ? "" : ", ") + arguments + ")";
}

// How a row of a table calls its operation.
#define CALL(...) [&](auto& object) { return object.__VA_ARGS__; }

using Answer = std::function<void(wire::TreeWriter&)>;

// An operation: what it sends after its status, how it is called, and what the reply holds after
// its status.
template <class Interface, class Method> struct Operation {
    Method method;
    std::string arguments;
    std::function<int(Interface&)> call;
    Answer answer = {};
};

class ProxyTest : public testing::Test {
protected:
    // Runs `use` against a daemon that answers each call with status 3 and the next of the answers;
    // the calls but for the session's own, as they came.
    std::vector<std::string> CallsOf(const std::function<void()>& use, const std::vector<Answer>& answers = {}) {
        std::vector<std::string> calls;
        std::thread daemon([&] {
            const auto connection = service.Accept();
            connection->Welcome();
            wire::Message message;
            while (connection->Receive(message)) {
                wire::Buffer tree;
                wire::TreeWriter writer(tree);
                if (message.method == GetMethodName(NorvexSessionMethod::Open)) {
                    opened = Describe(message);
                    writer.PutValue(0, std::int32_t{0});
                    writer.PutValue(1, kSession);
                } else if (message.method == GetMethodName(NorvexSessionMethod::Close)) {
                    closed = Describe(message);
                    writer.PutValue(0, std::int32_t{1});
                } else {
                    EXPECT_EQ(message.header.session, kSession);
                    writer.PutValue(0, std::int32_t{3});
                    if (calls.size() < answers.size() && answers[calls.size()])
                        answers[calls.size()](writer);
                    calls.push_back(Describe(message));
                }
                connection->Reply(message, tree);
            }
        });
        use();
        daemon.join();
        return calls;
    }

    // All operations of an interface, in their order, on an object that `create` makes.
    template <class Interface, class Method>
    void ExpectCalls(const std::function<int(Interface**)>& create, const std::string& pipeline,
                     const std::vector<Operation<Interface, Method>>& operations) {
        std::vector<std::string> expected;
        std::vector<Answer> answers;
        for (const auto& operation : operations) {
            EXPECT_EQ(static_cast<std::size_t>(operation.method), expected.size());
            expected.push_back(Describe(operation.method, operation.arguments));
            answers.push_back(operation.answer);
        }
        EXPECT_EQ(operations.size(), kTable<Method>.methodCount);
        EXPECT_EQ(CallsOf(
                      [&] {
                          Interface* object = nullptr;
                          ASSERT_EQ(create(&object), 0);
                          ASSERT_NE(object, nullptr);
                          for (const auto& operation : operations)
                              EXPECT_EQ(operation.call(*object), 3);
                          EXPECT_EQ(NorvexAPI::Destroy(object), 0);
                      },
                      answers),
                  expected);
        EXPECT_EQ(opened, Describe(NorvexSessionMethod::Open,
                                   "out 4:0, in '" + std::string(kTable<Method>.name) + "', " + pipeline));
        EXPECT_EQ(closed, Describe(NorvexSessionMethod::Close, "in 4:17"));
    }
    template <class Interface, class Method>
    void Expect(int (*create)(EProfile, int, Interface**),
                const std::vector<Operation<Interface, Method>>& operations) {
        ExpectCalls<Interface, Method>([create](Interface** object) { return create(PROFILE_PIP, 1, object); },
                                       "in 4:101, in 4:1", operations);
    }
    // An object without a pipeline.
    template <class Interface, class Method>
    void Expect(int (*create)(Interface**), const std::vector<Operation<Interface, Method>>& operations) {
        ExpectCalls<Interface, Method>(create, "in 4:0, in 4:0", operations);
    }

    FakeService service;
    Variable connectLimit{"NORVEX_CONNECT_LIMIT_MS", "20000"};
    Variable callLimit{"NORVEX_CALL_LIMIT_MS", "20000"};
    std::string opened;
    std::string closed;
};

std::uint64_t GetId(const TCServiceData& record) {
    return *static_cast<const std::uint64_t*>(record.GetFieldTable()->Find(12)->GetData());
}

} // namespace

TEST_F(ProxyTest, ReferenceCount) {
    using Method = ReferenceCountMethod;
    int count = 5;
    Expect<IReferenceCount, Method>(NorvexAPI::CreateReferenceCount,
                                    {{Method::GetReferenceCount, "out 4:5", CALL(GetReferenceCount(&count)),
                                      [](wire::TreeWriter& writer) { writer.PutValue(1, std::int32_t{42}); }}});
    EXPECT_EQ(count, 42);
}

TEST_F(ProxyTest, AVControl) {
    using Method = AVControlMethod;
    Expect<IAVControl, Method>(NorvexAPI::CreateAVControl,
                               {{Method::RestartVideoDecoder, "", CALL(RestartVideoDecoder())},
                                {Method::MuteVideo, "in 4:5", CALL(MuteVideo(5))},
                                {Method::MuteAudio, "in 4:-6", CALL(MuteAudio(-6))}});
}

TEST_F(ProxyTest, VideoControl) {
    using Method = VideoControlMethod;
    int window = 7;
    Expect<IVideoControl, Method>(
        NorvexAPI::CreateVideoControl,
        {{Method::SetCropVideo, "in object 48, in object 48", CALL(SetCropVideo({1, 2, 3, 4}, {5, 6, 7, 8}))},
         {Method::SetWindowId, "out 4:7", CALL(SetWindowId(&window))}});
    EXPECT_EQ(window, 7);
}

TEST_F(ProxyTest, TunerAndData) {
    Expect<ITunerControl, TunerControlMethod>(
        NorvexAPI::CreateTunerControl,
        {{TunerControlMethod::CheckTunerSignalState, "", CALL(CheckTunerSignalState())}});
    bool exists = false;
    Expect<IDataControl, DataControlMethod>(
        NorvexAPI::CreateDataControl,
        {{DataControlMethod::CheckCaptionExist, "out 1:0", CALL(CheckCaptionExist(&exists)),
          [](wire::TreeWriter& writer) { writer.PutValue(1, std::uint8_t{0x80}); }}});
    EXPECT_TRUE(exists) << "any byte but 0 is true";
}

TEST_F(ProxyTest, SourceControl) {
    using Method = SourceControlMethod;
    std::string empty;
    std::string text = "t";
    Expect<ISourceControl, Method>(
        NorvexAPI::CreateSourceControl,
        {{Method::SetSource, "in 4:13, in ''", CALL(SetSource(SOURCE_HDMI1, empty))},
         {Method::SetSource_Service, "in 4:0, in 8:45, in 't'", CALL(SetSource(SOURCE_TV, 0xfa0000000002002d, text))},
         {Method::PreSetSourceA, "", CALL(PreSetSourceA())},
         {Method::StartHDMIAnalysis, "in 4:14", CALL(StartHDMIAnalysis(SOURCE_HDMI2))},
         {Method::StopHDMIAnalysis, "in 4:15", CALL(StopHDMIAnalysis(SOURCE_HDMI3))},
         {Method::PreSetSourceC, "", CALL(PreSetSourceC())},
         {Method::PreSetSourceB, "", CALL(PreSetSourceB())},
         {Method::SetPreviewSource, "in 4:47, in ''", CALL(SetPreviewSource(SOURCE_HDMI8, empty))},
         {Method::SetPreviewSource_Service, "in 4:0, in 8:9, in ''", CALL(SetPreviewSource(SOURCE_TV, 9, empty))}});
}

TEST_F(ProxyTest, PipelineUtility) {
    using Method = PipelineUtilityMethod;
    bool pending = false;
    TCTPMSStatus status;
    Expect<IPipelineUtility, Method>(
        NorvexAPI::CreatePipelineUtility,
        {{Method::NotifyReceiverState, "in 4:1, in 'r', in 4:1, in 8:-1",
          CALL(NotifyReceiverState(STATE_CHANGE_SOURCE, "r", 1, UINT64_MAX))},
         {Method::RegisterForStateChange, "in 4:0, in 'r', in 4:0",
          CALL(RegisterForStateChange(STATE_CHANGE_SERVICE, "r", 0))},
         {Method::UnregisterFromStateChange, "in 4:1, in 'r'",
          CALL(UnregisterFromStateChange(STATE_CHANGE_SOURCE, "r"))},
         {Method::CheckPendingState, "in 4:0, out 1:0", CALL(CheckPendingState(STATE_CHANGE_SERVICE, &pending)),
          [](wire::TreeWriter& writer) { writer.PutValue(2, std::uint8_t{1}); }},
         {Method::GetCurrentTPMSStatus, "out object 16", CALL(GetCurrentTPMSStatus(&status))},
         {Method::NotifyReadyForSetService, "in 4:2, in 'app', in 4:1, in 8:6",
          CALL(NotifyReadyForSetService(2, "app", 1, 6))}});
    EXPECT_TRUE(pending);
}

TEST_F(ProxyTest, Services) {
    TCCriteriaHelper criteria;
    criteria.Where(13, 7);
    criteria.Fetch(12);
    TCServiceData record;
    Expect<IService, ServiceMethod>(NorvexAPI::CreateService,
                                    {{ServiceMethod::FindService, "in object 32, out object 0, in 4:1",
                                      CALL(FindService(criteria, record, 1)), [](wire::TreeWriter& writer) {
                                          const std::size_t begin = writer.BeginBranch(2);
                                          writer.PutValue(12, std::uint64_t{99});
                                          writer.EndBranch(begin);
                                      }}});
    EXPECT_EQ(GetId(record), 99u);
}

TEST_F(ProxyTest, ServiceGuide) {
    TCProgramData program;
    Expect<IServiceGuide, ServiceGuideMethod>(
        NorvexAPI::CreateServiceGuide,
        {{ServiceGuideMethod::GetCurrentProgram, "in 8:5, out object 28", CALL(GetCurrentProgram(5, program))}});
}

TEST_F(ProxyTest, ServiceNavigation) {
    using Method = ServiceNavigationMethod;
    TSTvMode mode;
    std::string text;
    unsigned long long id = ~0ull;
    TCCriteriaHelper criteria;
    std::list<TCServiceData*> records = {nullptr};
    Expect<IServiceNavigation, Method>(
        NorvexAPI::CreateServiceNavigation,
        {{Method::GetTvMode, "out object 24", CALL(GetTvMode(mode))},
         {Method::GetServiceList, "in object 16, out object 0, in object 24, in 4:4, in 4:5",
          CALL(GetServiceList(criteria, records, {}, 4, 5)),
          [](wire::TreeWriter& writer) {
              const std::size_t list = writer.BeginBranch(2);
              for (std::int16_t i = 0; i < 3; ++i) {
                  const std::size_t record = writer.BeginBranch(i);
                  writer.PutValue(12, std::uint64_t{100} + static_cast<std::uint64_t>(i));
                  writer.EndBranch(record);
              }
              writer.EndBranch(list);
          }},
         {Method::SetTvMode, "in object 24, in ''", CALL(SetTvMode(mode, text))},
         {Method::SetTvMode_Service, "in object 24, in 8:7, in ''", CALL(SetTvMode(mode, 7, text))},
         {Method::SetDTVMode, "in 4:3, in 1:1", CALL(SetDTVMode(DTV_MODE_ALL, true))},
         {Method::SetService, "in 8:7, in 4:1, in 4:2, in ''", CALL(SetService(7, 1, 2, text))},
         {Method::SetBootupService, "in 8:7, in object 24, in 4:1", CALL(SetBootupService(7, mode, 1))},
         {Method::GetLatestVeldaServiceId, "out 8:-1, in object 24", CALL(GetLatestVeldaServiceId(&id, mode))},
         {Method::GetLatestServiceId, "out 8:-1, in object 24", CALL(GetLatestServiceId(&id, mode)),
          [](wire::TreeWriter& writer) { writer.PutValue(1, std::uint64_t{1} << 63); }}});
    EXPECT_EQ(id, 1ull << 63);
    ASSERT_EQ(records.size(), 4u) << "appended";
    records.pop_front();
    for (std::uint64_t expected = 100; TCServiceData * record : records) {
        EXPECT_EQ(GetId(*record), expected++);
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
        {[](wire::TreeWriter& writer) {
            const std::size_t list = writer.BeginBranch(2);
            for (std::int16_t i = 0; i < 3; ++i) {
                const std::size_t record = writer.BeginBranch(i);
                writer.PutLeaf(12, wire::NodeKind::Value, "12345678", i < 2 ? 8 : 5);
                writer.EndBranch(record);
            }
            writer.EndBranch(list);
        }});
    EXPECT_TRUE(records.empty());
}

TEST_F(ProxyTest, ScanControl) {
    using Method = ScanControlMethod;
    const std::list<std::pair<std::uint64_t, std::uint32_t>> services = {{1, 5}, {UINT64_MAX, 5}};
    Expect<IScanControl, Method>(
        NorvexAPI::CreateScanControl,
        {{Method::IsTuneAroundNeeded, "in object 32", CALL(IsTuneAroundNeeded(services))},
         {Method::StartTuneAround, "in object 32, in 'DebugMenu'", CALL(StartTuneAround(services, "DebugMenu"))},
         {Method::StopManualScan, "", CALL(StopManualScan())},
         {Method::IsBarkerChannelScanAvailable, "in object 24", CALL(IsBarkerChannelScanAvailable({}))},
         {Method::StartBarkerChannelScan, "in '', in object 24", CALL(StartBarkerChannelScan("", {}))},
         {Method::StopBarkerChannelScan, "", CALL(StopBarkerChannelScan())}});
}

TEST_F(ProxyTest, ZoomControl) {
    using Method = ZoomControlMethod;
    const TSRectInfo rect(1, 2, 3, 4);
    int window = -1;
    bool flag = false;
    int type = 0;
    std::vector<int> windows;
    Expect<IZoomControl, Method>(
        NorvexAPI::CreateZoomControl,
        {{Method::CreateZoomWindow, "out 4:-1, in object 48, in object 48, in object 48",
          CALL(CreateZoomWindow(window, rect, rect, rect)),
          [](wire::TreeWriter& writer) { writer.PutValue(1, std::int32_t{9}); }},
         {Method::DeleteZoomWindow, "in object 12, in object 48", CALL(DeleteZoomWindow({4}, rect))},
         {Method::SetZoomWindow, "in object 12, in 1:1", CALL(SetZoomWindow({4}, true))},
         {Method::MuteZoomWindow, "in object 16, in 1:0", CALL(MuteZoomWindow({4, 5}, false))},
         {Method::IsZoomWindowStarted, "in 4:4, out 1:0", CALL(IsZoomWindowStarted(4, flag))},
         {Method::IsZoomWindowMuted, "in 4:4, out 1:0", CALL(IsZoomWindowMuted(4, flag))},
         {Method::SetZoomWindowRect, "in 4:4, in object 48, in object 48, in object 48",
          CALL(SetZoomWindowRect(4, rect, rect, rect))},
         {Method::IsZoomAvailable, "out 1:0", CALL(IsZoomAvailable(flag)),
          [](wire::TreeWriter& writer) { writer.PutValue(1, std::uint8_t{1}); }},
         {Method::GetZoomSharingType, "out 4:0", CALL(GetZoomSharingType(type)),
          [](wire::TreeWriter& writer) { writer.PutValue(1, std::int32_t{2}); }},
         {Method::GetConnectedZoomWindows, "out object 8", CALL(GetConnectedZoomWindows(windows)),
          [](wire::TreeWriter& writer) {
              const std::size_t begin = writer.BeginBranch(1);
              const std::int32_t numbers[] = {3, -4};
              writer.PutLeaf(0, wire::NodeKind::Array, numbers, sizeof numbers);
              writer.EndBranch(begin);
          }}});
    EXPECT_EQ(window, 9);
    EXPECT_TRUE(flag);
    EXPECT_EQ(type, 2);
    EXPECT_EQ(windows, (std::vector<int>{3, -4}));
}

TEST_F(ProxyTest, AFactoryReturnsAnObjectWithoutADaemon) {
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
    std::thread daemon([&] {
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
    daemon.join();
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
