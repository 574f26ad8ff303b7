// The values and helpers of the client library, by their encoded bytes.

#include <cstring>
#include <vector>

#include <gtest/gtest.h>
#include <norvex/client/CriteriaHelper.h>
#include <norvex/client/NavigationModeHelper.h>
#include <norvex/client/ProgramData.h>
#include <norvex/client/RectInfo.h>
#include <norvex/client/ServiceData.h>
#include <norvex/client/ServiceUtility.h>
#include <norvex/client/TPMSStatus.h>
#include <norvex/client/TvMode.h>
#include <norvex/core/MessageBuffer.h>
#include <wire/Tree.h>

namespace {

using Bytes = std::vector<unsigned char>;

// The content of the object's branch.
Bytes ContentOf(TCMarshalable& object) {
    TCMessageBuffer buffer;
    EXPECT_TRUE(object.Store(&buffer));
    const auto* bytes = static_cast<const unsigned char*>(buffer.GetData());
    return {bytes + wire::kNodeHeaderSize, bytes + buffer.GetSize()};
}

template <class Fill> bool ReadFrom(TCMarshalable& object, Fill fill) {
    wire::Buffer tree;
    wire::TreeWriter writer(tree);
    const std::size_t begin = writer.BeginBranch(0);
    fill(writer);
    writer.EndBranch(begin);
    TCMessageBuffer buffer;
    buffer.Append(tree.GetData(), tree.GetSize());
    return object.Load(&buffer);
}

// The criteria's conditions as numbers, three each, then the fetched fields.
std::vector<std::int32_t> NumbersOf(TCCriteriaHelper& criteria) {
    const Bytes content = ContentOf(criteria);
    wire::NodeCursor cursor(content.data(), content.size());
    wire::Node node;
    std::vector<std::int32_t> numbers;
    while (cursor.Next(node)) {
        const std::size_t before = numbers.size();
        numbers.resize(before + node.size / 4);
        if (node.size > 0)
            std::memcpy(numbers.data() + before, node.data, node.size);
    }
    return numbers;
}

} // namespace

TEST(ClientValues, ARectangle) {
    TSRectInfo rectangle(1, -2, 300, 70000);
    EXPECT_EQ(ContentOf(rectangle), (Bytes{0, 0, 1, 0, 4, 0, 0, 0, 1,    0,    0,    0,    //
                                           1, 0, 1, 0, 4, 0, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF, //
                                           2, 0, 1, 0, 4, 0, 0, 0, 0x2C, 0x01, 0,    0,    //
                                           3, 0, 1, 0, 4, 0, 0, 0, 0x70, 0x11, 0x01, 0}));
    TSRectInfo copy;
    EXPECT_EQ(copy.m_width, 0);
    TCMessageBuffer buffer;
    ASSERT_TRUE(rectangle.Store(&buffer));
    ASSERT_TRUE(copy.Load(&buffer));
    EXPECT_EQ(copy.m_y, -2);
    EXPECT_EQ(copy.m_height, 70000);
}

TEST(ClientValues, ATvMode) {
    TSTvMode none;
    EXPECT_EQ(none.m_antennaMode, -1);
    EXPECT_EQ(none.m_serviceMode, -1);
    TSTvMode cable(ANTENNA_CABLE, SERVICE_MODE_DEFAULT);
    EXPECT_EQ(ContentOf(cable), (Bytes{0, 0, 1, 0, 4, 0, 0, 0, 1, 0, 0, 0, //
                                       1, 0, 1, 0, 4, 0, 0, 0, 0, 0, 0, 0}));
    TCMessageBuffer buffer;
    ASSERT_TRUE(cable.Store(&buffer));
    ASSERT_TRUE(none.Load(&buffer));
    EXPECT_EQ(none.m_antennaMode, ANTENNA_CABLE);
    EXPECT_EQ(none.m_serviceMode, 0);
}

TEST(ClientValues, CriteriaKeepTheOrderInWhichTheyWereGiven) {
    TCCriteriaHelper criteria;
    criteria.Where(3, 2);
    criteria.WhereNot(1, 9);
    criteria.Fetch(12);
    criteria.Where(13, -7);
    criteria.Fetch(4);
    EXPECT_EQ(ContentOf(criteria), (Bytes{0,  0, 2, 0, 36, 0, 0, 0,                         //
                                          0,  0, 0, 0, 3,  0, 0, 0, 2,    0,    0,    0,    //
                                          1,  0, 0, 0, 1,  0, 0, 0, 9,    0,    0,    0,    //
                                          0,  0, 0, 0, 13, 0, 0, 0, 0xF9, 0xFF, 0xFF, 0xFF, //
                                          1,  0, 2, 0, 8,  0, 0, 0,                         //
                                          12, 0, 0, 0, 4,  0, 0, 0}));
    TCCriteriaHelper copy;
    copy.Where(99, 99);
    TCMessageBuffer buffer;
    ASSERT_TRUE(criteria.Store(&buffer));
    ASSERT_TRUE(copy.Load(&buffer));
    EXPECT_EQ(ContentOf(copy), ContentOf(criteria));
}

TEST(ClientValues, NavigationModesAskForWhatIsListedAndNotHidden) {
    for (const ENavigationMode mode : {NAVIGATION_ALL, NAVIGATION_BY_MAJOR}) {
        TCCriteriaHelper criteria;
        EXPECT_GT(TCNavigationModeHelper::GetNavigationCriteria(mode, criteria, NAVIGATION_SORT_DEFAULT), 0);
        EXPECT_EQ(NumbersOf(criteria), (std::vector<std::int32_t>{0, 23, 1, 0, 25, 0}));
    }
    TCCriteriaHelper criteria;
    EXPECT_LE(TCNavigationModeHelper::GetNavigationCriteria(static_cast<ENavigationMode>(2), criteria,
                                                            NAVIGATION_SORT_DEFAULT),
              0);
    EXPECT_TRUE(NumbersOf(criteria).empty());
}

TEST(ClientValues, TheLineUpsNumbers) {
    EXPECT_EQ(TCServiceUtility::AntennaModeToDigitalChannelType(ANTENNA_AIR), 1);
    EXPECT_EQ(TCServiceUtility::AntennaModeToDigitalChannelType(ANTENNA_CABLE), 2);
    EXPECT_EQ(TCServiceUtility::AntennaModeToDigitalChannelType(ANTENNA_SATELLITE), 3);
    EXPECT_EQ(TCServiceUtility::AntennaModeToDigitalChannelType(ANTENNA_NONE), -1);
    EXPECT_EQ(TCServiceUtility::AntennaModeToDigitalChannelType(static_cast<EAntennaMode>(7)), -1);
    EXPECT_EQ(TCServiceUtility::ServiceProfileToServiceMode(SERVICE_PROFILE_DEFAULT), 0);
    EXPECT_GT(TCServiceUtility::ServiceProfileToServiceMode(SERVICE_PROFILE_OPERATOR), 0);
    EXPECT_EQ(TCServiceUtility::ServiceProfileToServiceMode(static_cast<EServiceProfile>(1)), -1);
}

TEST(ClientValues, ARecordsFields) {
    TCServiceData record;
    EXPECT_EQ(record.GetFieldTable(), nullptr);
    ASSERT_TRUE(ReadFrom(record, [](wire::TreeWriter& writer) {
        writer.PutValue(12, std::uint64_t{0xfa0000000002002d});
        writer.PutValue(13, std::int32_t{-7});
        writer.PutLeaf(14, wire::NodeKind::Value, nullptr, 0);
        writer.PutValue(13, std::int32_t{8});
    }));
    const TCServiceFieldTable* table = record.GetFieldTable();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->Find(4), nullptr);
    ASSERT_NE(table->Find(12), nullptr);
    EXPECT_EQ(*static_cast<const std::uint64_t*>(table->Find(12)->GetData()), 0xfa0000000002002d);
    EXPECT_EQ(*static_cast<const std::int32_t*>(table->Find(13)->GetData()), -7);
    ASSERT_NE(table->Find(14), nullptr);
    EXPECT_EQ(table->Find(14)->GetData(), nullptr) << "a field without a value";
    const Bytes content = ContentOf(record);
    EXPECT_EQ(content.size(), 4u * 8 + 8 + 4 + 4);
}

TEST(ClientValues, ARecordWithAValueOfAnotherSizeIsRefused) {
    TCServiceData record;
    EXPECT_FALSE(ReadFrom(record, [](wire::TreeWriter& writer) { writer.PutValue(12, std::int32_t{1}); }));
    EXPECT_FALSE(ReadFrom(record, [](wire::TreeWriter& writer) { writer.PutValue(13, std::uint64_t{1}); }));
    EXPECT_FALSE(ReadFrom(
        record, [](wire::TreeWriter& writer) { writer.PutLeaf(13, wire::NodeKind::Value, Bytes(1000).data(), 1000); }));
    EXPECT_EQ(record.GetFieldTable(), nullptr);
}

TEST(ClientValues, AProgrammesTitle) {
    TCProgramData program;
    unsigned short buffer[8] = {9, 9, 9, 9, 9, 9, 9, 9};
    unsigned int length = 8;
    EXPECT_FALSE(program.Title(buffer, &length));
    EXPECT_EQ(buffer[0], 9);
    const unsigned short title[] = {0x41, 0xD83D, 0xDE00, 0x42};
    const auto fill = [&](wire::TreeWriter& writer) {
        writer.PutValue(0, std::uint64_t{1700000000});
        writer.PutValue(1, std::uint32_t{3600});
        writer.PutLeaf(2, wire::NodeKind::Array, title, sizeof title);
    };
    ASSERT_TRUE(ReadFrom(program, fill));
    EXPECT_TRUE(program.Title(buffer, &length));
    EXPECT_EQ(length, 4u);
    EXPECT_EQ(std::memcmp(buffer, title, sizeof title), 0);
    EXPECT_EQ(buffer[4], 9);
    length = 2;
    EXPECT_TRUE(program.Title(buffer, &length)) << "cut to the room";
    EXPECT_EQ(length, 2u);
    EXPECT_FALSE(program.Title(nullptr, &length));
    EXPECT_FALSE(program.Title(buffer, nullptr));
    const Bytes content = ContentOf(program);
    wire::Buffer expected;
    wire::TreeWriter writer(expected);
    fill(writer);
    EXPECT_EQ(content, Bytes(expected.GetData(), expected.GetData() + expected.GetSize()));
    EXPECT_FALSE(ReadFrom(program, [](wire::TreeWriter& odd) { odd.PutLeaf(2, wire::NodeKind::Array, "abc", 3); }))
        << "half a unit";
}

TEST(ClientValues, AnEmptyTitleIsATitle) {
    TCProgramData program;
    ASSERT_TRUE(
        ReadFrom(program, [](wire::TreeWriter& writer) { writer.PutLeaf(2, wire::NodeKind::Array, nullptr, 0); }));
    unsigned short buffer[1] = {};
    unsigned int length = 1;
    EXPECT_TRUE(program.Title(buffer, &length));
    EXPECT_EQ(length, 0u);
}

TEST(ClientValues, ASnapshotOfThePipelines) {
    TCTPMSStatus status;
    EXPECT_TRUE(status.GetEntries().empty());
    const auto fill = [](wire::TreeWriter& writer) {
        const std::size_t pipelines = writer.BeginBranch(0);
        const std::size_t pipeline = writer.BeginBranch(0);
        writer.PutValue(0, std::int32_t{101});
        writer.PutValue(1, std::uint16_t{1});
        const unsigned char times[] = {0, 0, 0, 0, 0x10, 0x27, 0, 0, 0, 0, 0, 0, 2, 0, 0, 0, 5, 0, 0, 0, 1, 0, 0, 0};
        writer.PutLeaf(2, wire::NodeKind::Array, times, sizeof times);
        writer.EndBranch(pipeline);
        writer.EndBranch(pipelines);
        const std::size_t entries = writer.BeginBranch(1);
        const std::size_t entry = writer.BeginBranch(0);
        writer.PutValue(0, std::int32_t{101});
        writer.PutValue(1, std::uint16_t{1});
        writer.PutText(2, "source HDMI1");
        writer.EndBranch(entry);
        writer.EndBranch(entries);
    };
    ASSERT_TRUE(ReadFrom(status, fill));
    ASSERT_EQ(status.GetPipelines().size(), 1u);
    const auto& [handle, info] = *status.GetPipelines().begin();
    EXPECT_EQ(handle.profile, PROFILE_PIP);
    EXPECT_EQ(handle.screenId, 1);
    EXPECT_EQ(info.GetEventTimes(), (std::map<ESIEvent, unsigned long long>{
                                        {SI_EVENT_STARTED, 10000}, {SI_EVENT_DECODER_RESTARTED, 0x100000005}}));
    ASSERT_EQ(status.GetEntries().size(), 1u);
    EXPECT_EQ(status.GetEntries()[0]->GetText(), "source HDMI1");
    EXPECT_EQ(status.GetEntries()[0]->GetHandle().profile, PROFILE_PIP);
    wire::Buffer expected;
    wire::TreeWriter writer(expected);
    fill(writer);
    EXPECT_EQ(ContentOf(status), Bytes(expected.GetData(), expected.GetData() + expected.GetSize()));
    ASSERT_TRUE(ReadFrom(status, fill)) << "again, in place of what it held";
    EXPECT_EQ(status.GetEntries().size(), 1u);
}

TEST(ClientValues, APipelinesInfoIsAValue) {
    TCPipelineInfo info;
    info.SetEventTime(SI_EVENT_CAPTIONS, 5);
    TCPipelineInfo copy(info);
    copy.SetEventTime(SI_EVENT_CAPTIONS, 6);
    EXPECT_EQ(info.GetEventTimes().at(SI_EVENT_CAPTIONS), 5u);
    info = copy;
    EXPECT_EQ(info.GetEventTimes().at(SI_EVENT_CAPTIONS), 6u);
    const TCPipelineInfo& same = info;
    info = same;
    EXPECT_EQ(info.GetEventTimes().size(), 1u);
}
