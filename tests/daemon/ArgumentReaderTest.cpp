#include "ArgumentReader.h"

#include <vector>

#include <gtest/gtest.h>

namespace {

using sim::ArgumentReader;
using wire::Direction;

const std::vector<sim::Argument> kExecute{sim::Out("status", sim::kInt), sim::In("command", sim::kText),
                                          sim::Out("screen", sim::kText)};

class ArgumentReaderTest : public testing::Test {
protected:
    ArgumentReader Read(const std::vector<sim::Argument>& arguments) const {
        return ArgumentReader(arguments, m_bytes.GetData(), m_bytes.GetSize());
    }
    void PutLength(std::int16_t place) {
        const std::uint32_t length = 0;
        m_tree.PutLeaf(place, wire::NodeKind::Length, &length, sizeof length);
    }
    void PutExecute() {
        m_tree.PutValue(0, std::int32_t{-1});
        m_tree.PutText(1, "status", Direction::In);
        PutLength(2);
    }

    wire::Buffer m_bytes;
    wire::TreeWriter m_tree{m_bytes};
};

TEST_F(ArgumentReaderTest, ArgumentsAreReadByPlace) {
    const std::vector<sim::Argument> all{
        sim::In("a", sim::kInt),  sim::In("b", sim::kUInt), sim::In("c", sim::kUShort),  sim::In("d", sim::kNumber64),
        sim::In("e", sim::kBool), sim::In("f", sim::kText), sim::In("g", sim::kIntList), sim::In("h", sim::kAnything),
    };
    m_tree.PutValue(0, std::int32_t{-7}, Direction::In);
    m_tree.PutValue(1, std::uint32_t{0xFFFFFFFF}, Direction::In);
    m_tree.PutValue(2, std::uint16_t{65535}, Direction::In);
    m_tree.PutValue(3, ~std::uint64_t{0}, Direction::In);
    m_tree.PutValue(4, std::uint8_t{1}, Direction::In);
    m_tree.PutText(5, std::string_view("a\0b", 3), Direction::In);
    m_tree.EndBranch(m_tree.BeginBranch(6, Direction::In));
    m_tree.PutValue(7, 1.5, Direction::In);
    const ArgumentReader in = Read(all);
    ASSERT_TRUE(in.IsValid()) << in.DescribeFault();
    EXPECT_EQ(in.Int(0), -7);
    EXPECT_EQ(in.UInt(1), 0xFFFFFFFFu);
    EXPECT_EQ(in.UShort(2), 65535);
    EXPECT_EQ(in.Number64(3), ~std::uint64_t{0});
    EXPECT_TRUE(in.Bool(4));
    EXPECT_EQ(in.Text(5), std::string_view("a\0b", 3));
    EXPECT_EQ(in.At(7).size, 8u);
}

TEST_F(ArgumentReaderTest, AnOutTextMayComeAsItsLength) {
    PutExecute();
    EXPECT_TRUE(Read(kExecute).IsValid());
}

TEST_F(ArgumentReaderTest, MissingArgumentIsRefused) {
    m_tree.PutValue(0, std::int32_t{-1});
    EXPECT_EQ(Read(kExecute).DescribeFault(), "argument 1 (command: text) is missing");
}

TEST_F(ArgumentReaderTest, OneTooManyIsRefused) {
    PutExecute();
    m_tree.PutValue(3, std::int32_t{1});
    EXPECT_EQ(Read(kExecute).DescribeFault(), "argument 3 is unexpected");
}

TEST_F(ArgumentReaderTest, OrderAndDirectionCount) {
    m_tree.PutValue(1, std::int32_t{-1});
    EXPECT_EQ(Read(kExecute).DescribeFault(), "argument 0 (status: int) is out of order");
    m_bytes.Clear();
    m_tree.PutValue(0, std::int32_t{-1}, Direction::In);
    EXPECT_EQ(Read(kExecute).DescribeFault(), "argument 0 (status: int) has the wrong direction");
}

TEST_F(ArgumentReaderTest, AnotherTypeIsRefused) {
    m_tree.PutValue(0, std::int32_t{-1});
    m_tree.PutValue(1, std::int32_t{5}, Direction::In);
    EXPECT_EQ(Read(kExecute).DescribeFault(), "argument 1 (command: text) has the wrong type");
    m_bytes.Clear();
    m_tree.PutValue(0, std::int64_t{-1});
    EXPECT_EQ(Read(kExecute).DescribeFault(), "argument 0 (status: int) has the wrong type");
}

TEST_F(ArgumentReaderTest, ATextWithAWrongLengthIsRefused) {
    m_tree.PutValue(0, std::int32_t{-1});
    const std::size_t text = m_tree.BeginBranch(1, Direction::In);
    m_tree.PutValue(0, std::uint32_t{1000});
    m_tree.PutLeaf(1, wire::NodeKind::Array, "abc", 3);
    m_tree.EndBranch(text);
    PutLength(2);
    EXPECT_EQ(Read(kExecute).DescribeFault(), "argument 1 (command: text) has the wrong type");
}

TEST_F(ArgumentReaderTest, EachItemOfAListIsChecked) {
    const std::vector<sim::Argument> items{sim::In("items", sim::kMenuItemList)};
    const auto put = [&](bool withId) {
        m_bytes.Clear();
        const std::size_t list = m_tree.BeginBranch(0, Direction::In);
        const std::size_t item = m_tree.BeginBranch(0);
        m_tree.PutText(0, "name");
        m_tree.PutValue(1, std::uint8_t{1});
        if (withId)
            m_tree.PutValue(2, std::uint32_t{101});
        m_tree.EndBranch(item);
        m_tree.EndBranch(list);
    };
    put(true);
    EXPECT_TRUE(Read(items).IsValid());
    put(false);
    EXPECT_FALSE(Read(items).IsValid());
}

} // namespace
