// Bytes written by hand from the tables of docs/wire-format.md. If one of these tests fails, the
// format has changed: daemon and client of different versions no longer understand each other.

#include <cstring>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <interfaces/Interfaces.h>
#include <norvex/core/MarshallingHelperProxy.h>
#include <norvex/core/MessageBuffer.h>
#include <wire/Packet.h>
#include <wire/Tree.h>

#include "EchoConnection.h"
#include "MessagePackets.h"
#include "TestTypes.h"

namespace {

using Bytes = std::vector<unsigned char>;

// The tree of Execute("list", screen) while the screen holds three bytes.
const Bytes kExecuteTree = {
    0x00, 0x00, 0x01, 0x00, 0x04, 0x00, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, // status
    0x01, 0x00, 0x03, 0x01, 0x18, 0x00, 0x00, 0x00,                         // command
    0x00, 0x00, 0x01, 0x00, 0x04, 0x00, 0x00, 0x00, 0x04, 0x00, 0x00, 0x00, // its length
    0x01, 0x00, 0x02, 0x00, 0x04, 0x00, 0x00, 0x00, 'l',  'i',  's',  't',  // its bytes
    0x02, 0x00, 0x04, 0x00, 0x04, 0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x00, // screen: 3 bytes
};

const Bytes kExecuteReplyTree = {
    0x00, 0x00, 0x01, 0x00, 0x04, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, // status 1
    0x02, 0x00, 0x03, 0x00, 0x16, 0x00, 0x00, 0x00,                         // screen
    0x00, 0x00, 0x01, 0x00, 0x04, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, // its length
    0x01, 0x00, 0x02, 0x00, 0x02, 0x00, 0x00, 0x00, 'o',  'k',              // its bytes
};

constexpr std::string_view kInterface = "com.holvi.IDebugPrintControl";

Bytes PacketOf(wire::MessageHeader header, std::string_view interfaceName, std::string_view method, const Bytes& tree) {
    const std::vector<Packet> packets = ToPackets(header, interfaceName, method, tree.data(), tree.size());
    EXPECT_EQ(packets.size(), 1u);
    return packets[0];
}

Bytes TreeOf(TCMarshalable& object) {
    TCMessageBuffer buffer;
    EXPECT_TRUE(object.Store(&buffer));
    const auto* bytes = static_cast<const unsigned char*>(buffer.GetData());
    return {bytes, bytes + buffer.GetSize()};
}

} // namespace

TEST(WireFormat, ACallsTreeHoldsEveryArgument) {
    EchoConnection connection;
    connection.reply = kExecuteReplyTree;
    int status = -1;
    std::string command = "list";
    std::string screen = "old";
    TestText commandArgument(command);
    TestText screenArgument(screen);
    TCMarshallingHelperProxy helper;
    helper.PushValue(MARSHALLING_OUT, sizeof status, &status);
    helper.PushMarshalableClass(MARSHALLING_IN, &commandArgument);
    helper.PushMarshalableClass(MARSHALLING_OUT, &screenArgument);
    std::string interfaceName(kInterface);
    EXPECT_TRUE(helper.Run(&connection, interfaceName, "Execute", 1, false));
    EXPECT_EQ(connection.call, kExecuteTree);
    EXPECT_EQ(connection.interfaceName, kInterface);
    EXPECT_EQ(connection.method, "Execute");
    EXPECT_EQ(connection.methodId, 1);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(screen, "ok");
}

TEST(WireFormat, ACallIsOnePacket) {
    wire::MessageHeader header;
    header.kind = wire::MessageKind::Call;
    header.methodId = 1;
    header.serial = 7;
    Bytes expected = {
        0x4E, 0x56, 0x01, 0x00,                         // packet
        0x03, 0x00, 0x01, 0x00,                         // call, method ID
        0x07, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, // serial, session
        0x1C, 0x00, 0x07, 0x00, 0x38, 0x00, 0x00, 0x00, // lengths
        0x00, 0x00, 0x00, 0x00,                         //
        'c',  'o',  'm',  '.',  'h',  'o',  'l',  'v',  'i', '.', 'I', 'D', 'e', 'b', 'u', 'g', 'P', 'r',
        'i',  'n',  't',  'C',  'o',  'n',  't',  'r',  'o', 'l', 'E', 'x', 'e', 'c', 'u', 't', 'e',
    };
    expected.insert(expected.end(), kExecuteTree.begin(), kExecuteTree.end());
    EXPECT_EQ(expected.size(), 119u);
    EXPECT_EQ(PacketOf(header, kInterface, "Execute", kExecuteTree), expected);
}

TEST(WireFormat, AReplyIsOnePacket) {
    wire::MessageHeader header;
    header.kind = wire::MessageKind::Reply;
    header.methodId = 1;
    header.serial = 7;
    Bytes expected = {
        0x4E, 0x56, 0x01, 0x00,                         // packet
        0x04, 0x00, 0x01, 0x00,                         // reply, method ID
        0x07, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, // serial, session
        0x00, 0x00, 0x00, 0x00, 0x2A, 0x00, 0x00, 0x00, // lengths
        0x00, 0x00, 0x00, 0x00,                         //
    };
    expected.insert(expected.end(), kExecuteReplyTree.begin(), kExecuteReplyTree.end());
    EXPECT_EQ(expected.size(), 70u);
    EXPECT_EQ(PacketOf(header, {}, {}, kExecuteReplyTree), expected);
}

TEST(WireFormat, TheKindsHaveTheirNumbers) {
    EXPECT_EQ(static_cast<int>(wire::MessageKind::Hello), 1);
    EXPECT_EQ(static_cast<int>(wire::MessageKind::Welcome), 2);
    EXPECT_EQ(static_cast<int>(wire::MessageKind::Call), 3);
    EXPECT_EQ(static_cast<int>(wire::MessageKind::Reply), 4);
    EXPECT_EQ(static_cast<int>(wire::MessageKind::Signal), 5);
    EXPECT_EQ(static_cast<int>(wire::MessageKind::Log), 6);
}

TEST(WireFormat, TheHeadersFieldsStandInTheirPlaces) {
    const unsigned char bytes[] = {
        0x03, 0x00, 0xFE, 0xFF, // call, method ID -2
        0x04, 0x03, 0x02, 0x01, // serial
        0x08, 0x07, 0x06, 0x05, // session
        0x02, 0x00, 0x01, 0x00, // names
        0x08, 0x00, 0x00, 0x00, // tree
        0x00, 0x00, 0x00, 0x00, 'a', 'b', 'c', 0x05, 0x00, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00,
    };
    wire::Message message;
    ASSERT_TRUE(wire::ParseMessage(bytes, sizeof bytes, message));
    EXPECT_EQ(message.header.methodId, -2);
    EXPECT_EQ(message.header.serial, 0x01020304u);
    EXPECT_EQ(message.header.session, 0x05060708u);
    EXPECT_EQ(message.interfaceName, "ab");
    EXPECT_EQ(message.method, "c");
    EXPECT_EQ(message.tree, bytes + 27);
}

TEST(WireFormat, PlainValuesOfEachSize) {
    Numbers numbers;
    numbers.byte = 0xA5;
    numbers.small = -2;
    numbers.number = 0x01020304;
    numbers.wide = 0x1112131415161718;
    numbers.fraction = 1.0;
    const Bytes expected = {
        0x00, 0x00, 0x03, 0x00, 0x3F, 0x00, 0x00, 0x00,       // the object: 63 bytes
        0x00, 0x00, 0x01, 0x00, 0x01, 0x00, 0x00, 0x00, 0xA5, // 8 bits
        0x01, 0x00, 0x01, 0x00, 0x02, 0x00, 0x00, 0x00, 0xFE, 0xFF, 0x02, 0x00, 0x01, 0x00, 0x04, 0x00,
        0x00, 0x00, 0x04, 0x03, 0x02, 0x01, 0x03, 0x00, 0x01, 0x00, 0x08, 0x00, 0x00, 0x00, 0x18, 0x17,
        0x16, 0x15, 0x14, 0x13, 0x12, 0x11, //
        0x04, 0x00, 0x01, 0x00, 0x08, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF0, 0x3F,
    };
    EXPECT_EQ(TreeOf(numbers), expected);
}

TEST(WireFormat, AnEmptyTextIsItsLengthAlone) {
    std::string empty;
    TestText text(empty);
    const Bytes expected = {
        0x00, 0x00, 0x03, 0x00, 0x0C, 0x00, 0x00, 0x00, 0x00, 0x00,
        0x01, 0x00, 0x04, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
    };
    EXPECT_EQ(TreeOf(text), expected);
}

TEST(WireFormat, ATextHasNothingAfterItsBytes) {
    for (const std::string_view bytes : {"", "abc"}) {
        wire::Buffer buffer;
        wire::TreeWriter writer(buffer);
        const std::size_t begin = writer.BeginBranch(0);
        writer.PutValue(0, static_cast<std::uint32_t>(bytes.size()));
        if (!bytes.empty())
            writer.PutLeaf(1, wire::NodeKind::Array, bytes.data(), bytes.size());
        writer.PutValue(2, 5);
        writer.EndBranch(begin);
        wire::NodeCursor cursor(buffer.GetData(), buffer.GetSize());
        wire::Node node;
        ASSERT_TRUE(cursor.Next(node));
        std::string_view text;
        EXPECT_FALSE(wire::GetText(node, text)) << bytes;
    }
}

TEST(WireFormat, AContainersChildrenAreNumberedByTheirPlace) {
    std::vector<Numbers> two(2);
    TestVector<Numbers> container(two);
    const Bytes tree = TreeOf(container);
    // The object, then each element: 8 bytes of header and 63 of content.
    ASSERT_EQ(tree.size(), 8u + 2 * (8 + 63));
    EXPECT_EQ(Bytes(tree.begin(), tree.begin() + 16), (Bytes{0x00, 0x00, 0x03, 0x00, 0x8E, 0x00, 0x00, 0x00, //
                                                             0x00, 0x00, 0x03, 0x00, 0x3F, 0x00, 0x00, 0x00}));
    EXPECT_EQ(Bytes(tree.begin() + 79, tree.begin() + 87), (Bytes{0x01, 0x00, 0x03, 0x00, 0x3F, 0x00, 0x00, 0x00}));
}

TEST(WireFormat, AnArrayHoldsItsElementsWithoutGaps) {
    Mixed mixed;
    mixed.samples[0] = 0x0102;
    mixed.samples[4] = 0x0304;
    const Bytes tree = TreeOf(mixed);
    const Bytes array = {0x05, 0x00, 0x02, 0x00, 0x0A, 0x00, 0x00, 0x00, 0x02,
                         0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x04, 0x03};
    ASSERT_GT(tree.size(), array.size());
    EXPECT_EQ(Bytes(tree.end() - static_cast<std::ptrdiff_t>(array.size()), tree.end()), array);
}

// "INTERFACE: METHOD METHOD ...", in the order of the methods' IDs.
template <class Method> std::string List() {
    const interfaces::InterfaceTable& table = interfaces::kTable<Method>;
    std::string list = std::string(table.name) + ":";
    for (std::size_t id = 0; id < table.methodCount; ++id)
        list += " " + std::string(table.methods[id]);
    return list;
}

TEST(WireFormat, MethodsHaveTheirIds) {
    using namespace interfaces;
    EXPECT_EQ(List<NorvexSessionMethod>(), "com.holvi.INorvexSession: Open Close");
    EXPECT_EQ(List<SignalSubscriberMethod>(), "com.holvi.ISignalSubscriber: Subscribe Unsubscribe");
    EXPECT_EQ(List<DeviceMethod>(), "com.holvi.IDevice: GetInt StartLogTag StopLogTag");
    EXPECT_EQ(List<DebugPrintControlMethod>(),
              "com.holvi.IDebugPrintControl: Start Execute Stop Check GetMenuItems SetMenuItems "
              "SetMenuItem SetQoSEnabled IsQoSEnabled SetDebugMode IsDebugModeEnabled");
    EXPECT_EQ(List<ReferenceCountMethod>(), "com.holvi.IReferenceCount: GetReferenceCount");
    EXPECT_EQ(List<AVControlMethod>(), "com.holvi.IAVControl: RestartVideoDecoder MuteVideo MuteAudio");
    EXPECT_EQ(List<VideoControlMethod>(), "com.holvi.IVideoControl: SetCropVideo SetWindowId");
    EXPECT_EQ(List<TunerControlMethod>(), "com.holvi.ITunerControl: CheckTunerSignalState");
    EXPECT_EQ(List<DataControlMethod>(), "com.holvi.IDataControl: CheckCaptionExist");
    EXPECT_EQ(List<SourceControlMethod>(),
              "com.holvi.ISourceControl: SetSource SetSource PreSetSourceA StartHDMIAnalysis "
              "StopHDMIAnalysis PreSetSourceC PreSetSourceB SetPreviewSource SetPreviewSource");
    EXPECT_EQ(List<PipelineUtilityMethod>(), "com.holvi.IPipelineUtility: NotifyReceiverState RegisterForStateChange "
                                             "UnregisterFromStateChange CheckPendingState GetCurrentTPMSStatus "
                                             "NotifyReadyForSetService");
    EXPECT_EQ(List<ZoomControlMethod>(), "com.holvi.IZoomControl: CreateZoomWindow DeleteZoomWindow SetZoomWindow "
                                         "MuteZoomWindow IsZoomWindowStarted IsZoomWindowMuted SetZoomWindowRect "
                                         "IsZoomAvailable GetZoomSharingType GetConnectedZoomWindows");
    EXPECT_EQ(List<ServiceMethod>(), "com.holvi.IService: FindService");
    EXPECT_EQ(List<ServiceNavigationMethod>(),
              "com.holvi.IServiceNavigation: GetTvMode GetServiceList SetTvMode SetTvMode "
              "SetDTVMode SetService SetBootupService GetLatestVeldaServiceId GetLatestServiceId");
    EXPECT_EQ(List<ServiceGuideMethod>(), "com.holvi.IServiceGuide: GetCurrentProgram");
    EXPECT_EQ(List<ScanControlMethod>(), "com.holvi.IScanControl: IsTuneAroundNeeded StartTuneAround StopManualScan "
                                         "IsBarkerChannelScanAvailable StartBarkerChannelScan StopBarkerChannelScan");
}
