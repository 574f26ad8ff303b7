// Received values: which are accepted, which are refused, and how the journal shows them.

#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <values/Values.h>

#include "ArgumentType.h"

namespace {

using nlohmann::json;
using wire::NodeKind;

// A value's branch, written node by node.
class ValuesTest : public testing::Test {
protected:
    wire::Node Branch() {
        wire::Node node;
        node.kind = NodeKind::Branch;
        node.data = m_bytes.GetData();
        node.size = static_cast<std::uint32_t>(m_bytes.GetSize());
        return node;
    }
    template <class Fill> void PutBranch(std::int16_t tag, Fill&& fill) {
        const std::size_t branch = tree.BeginBranch(tag);
        fill();
        tree.EndBranch(branch);
    }
    bool Fits(const sim::ArgumentType& type) { return type.Fits(Branch()); }
    json Shown(const sim::ArgumentType& type) { return type.describe(Branch()); }

    wire::Buffer m_bytes;
    wire::TreeWriter tree{m_bytes};
};

TEST_F(ValuesTest, EachFieldIsNeeded) {
    for (std::int16_t tag = 0; tag < 4; ++tag) {
        EXPECT_FALSE(Fits(sim::kRect)) << tag;
        tree.PutValue(tag, std::int32_t{tag * 10});
    }
    EXPECT_TRUE(Fits(sim::kRect));
    EXPECT_EQ(Shown(sim::kRect), json::parse(R"({"x": 0, "y": 10, "width": 20, "height": 30})"));
}

TEST_F(ValuesTest, AFieldOfAnotherSizeOrKindIsRefused) {
    tree.PutValue(0, std::int32_t{1});
    const std::size_t whole = m_bytes.GetSize();
    tree.PutValue(1, std::int64_t{1});
    EXPECT_FALSE(Fits(sim::kTvMode));
    m_bytes.Truncate(whole);
    tree.PutLeaf(1, NodeKind::Array, "four", 4);
    EXPECT_FALSE(Fits(sim::kTvMode));
    m_bytes.Truncate(whole);
    tree.PutValue(1, std::int32_t{1});
    EXPECT_TRUE(Fits(sim::kTvMode));
}

TEST_F(ValuesTest, UnknownFieldsArePassedOverAndTheFirstOfEqualTagsCounts) {
    tree.PutValue(7, std::int64_t{1});
    tree.PutValue(1, std::int32_t{3});
    tree.PutValue(0, std::int32_t{2});
    tree.PutValue(0, std::int16_t{9});
    EXPECT_TRUE(Fits(sim::kTvMode));
    EXPECT_EQ(Shown(sim::kTvMode), json::parse(R"({"antenna": 2, "serviceMode": 3})"));
}

TEST_F(ValuesTest, AQueriesConditionsHaveWords) {
    const std::int32_t conditions[] = {0, 13, 7, 1, 1, 9};
    const std::int32_t fields[] = {12, 4};
    tree.PutLeaf(0, NodeKind::Array, conditions, sizeof conditions);
    tree.PutLeaf(1, NodeKind::Array, fields, sizeof fields);
    EXPECT_TRUE(Fits(sim::kCriteria));
    EXPECT_EQ(Shown(sim::kCriteria), json::parse(R"({
        "where": [{"is": "equal", "field": 13, "value": 7},
                  {"is": "different", "field": 1, "value": 9}],
        "fetch": [12, 4]})"));
}

TEST_F(ValuesTest, AComparisonThatThereIsNotIsRefused) {
    for (const std::int32_t comparison : {2, -1}) {
        m_bytes.Clear();
        const std::int32_t condition[] = {comparison, 13, 7};
        tree.PutLeaf(0, NodeKind::Array, condition, sizeof condition);
        tree.PutLeaf(1, NodeKind::Array, nullptr, 0);
        EXPECT_FALSE(Fits(sim::kCriteria)) << comparison;
        EXPECT_EQ(Shown(sim::kCriteria)["where"][0]["is"], comparison);
    }
}

TEST_F(ValuesTest, AnArrayHoldsWholeElements) {
    const unsigned char bytes[] = {0x2D, 0,    2,    0,    0,    0,    0,    0xFA, 5, 0, 0, 0,
                                   0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 6, 0, 0, 0};
    EXPECT_TRUE(Fits(sim::kServiceCodes)) << "none at all";
    EXPECT_EQ(Shown(sim::kServiceCodes), json::array());
    tree.PutLeaf(0, NodeKind::Array, bytes, sizeof bytes);
    EXPECT_TRUE(Fits(sim::kServiceCodes));
    EXPECT_EQ(Shown(sim::kServiceCodes), json::parse(R"([{"service": "0xfa0000000002002d", "code": 5},
                              {"service": "0xffffffffffffffff", "code": 6}])"));
    m_bytes.Clear();
    tree.PutLeaf(0, NodeKind::Array, bytes, sizeof bytes - 1);
    EXPECT_FALSE(Fits(sim::kServiceCodes));
    EXPECT_EQ(Shown(sim::kServiceCodes).size(), 1u) << "what is whole";
    m_bytes.Clear();
    tree.PutLeaf(0, NodeKind::Array, bytes, sizeof bytes);
    tree.PutValue(1, std::int32_t{1});
    EXPECT_FALSE(Fits(sim::kServiceCodes)) << "one node too many";
}

TEST_F(ValuesTest, AStatusIsShownByItsFields) {
    PutBranch(0, [&] {
        PutBranch(0, [&] {
            const unsigned char events[] = {2, 0, 0, 0, 0x10, 0x27, 0, 0, 0, 0, 0, 0};
            tree.PutValue(0, std::int32_t{101});
            tree.PutValue(1, std::uint16_t{65535});
            tree.PutLeaf(2, NodeKind::Array, events, sizeof events);
        });
    });
    PutBranch(1, [&] {
        PutBranch(0, [&] {
            tree.PutValue(0, std::int32_t{1});
            tree.PutValue(1, std::uint16_t{0});
            tree.PutText(2, "source 0");
        });
    });
    EXPECT_EQ(Shown(sim::kStatus), json::parse(R"({
        "pipelines": [{"profile": 101, "screen": 65535,
                       "events": [{"event": 2, "milliseconds": 10000}]}],
        "entries": [{"profile": 1, "screen": 0, "text": "source 0"}]})"));
}

TEST_F(ValuesTest, AProgrammesTitleIsShownAsFarAsItIsText) {
    const char16_t title[] = {u'a', 0xE4, 0xD83D, 0xDE00, 0xDC00, u'z'};
    tree.PutValue(0, std::uint64_t{1700000000});
    tree.PutValue(1, std::uint32_t{60});
    EXPECT_EQ(Shown(sim::kProgramme), json::parse(R"({"start": 1700000000, "duration": 60})"));
    tree.PutLeaf(2, NodeKind::Array, title, sizeof title);
    EXPECT_EQ(Shown(sim::kProgramme)["title"], "a\u00e4\U0001F600");
}

TEST_F(ValuesTest, ARecordsFieldsHaveNames) {
    tree.PutValue(12, std::uint64_t{1} << 63);
    tree.PutValue(13, std::int32_t{-7});
    tree.PutLeaf(14, NodeKind::Value, nullptr, 0);
    tree.PutValue(99, std::int32_t{1});
    EXPECT_EQ(Shown(sim::kRecord), json::parse(R"({"id": "0x8000000000000000", "major": -7,
                                                   "minor": null, "99": 1})"));
}

// Elements are identified by their order: their tags restart.
TEST_F(ValuesTest, AListOfMoreThanItsTagsCanCount) {
    const std::vector<values::MenuItem> items(INT16_MAX + 2, values::MenuItem{"item", true, 7});
    values::WriteArgument(tree, 3, items);
    wire::NodeCursor cursor(m_bytes.GetData(), m_bytes.GetSize());
    wire::Node list;
    ASSERT_TRUE(cursor.Next(list));
    EXPECT_TRUE(sim::kMenuItemList.Fits(list));
    std::vector<values::MenuItem> read;
    EXPECT_TRUE(values::ReadArgument(list, read, values::Missing::Refused));
    EXPECT_EQ(read.size(), items.size());
    wire::Node last;
    for (wire::NodeCursor elements(list); elements.Next(last);) {
    }
    EXPECT_EQ(last.tag, 0);
}

} // namespace
