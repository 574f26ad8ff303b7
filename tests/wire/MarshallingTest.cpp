#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <norvex/core/ClassToTreeFormatter.h>
#include <norvex/core/LengthInfoContainer.h>
#include <norvex/core/MarshallingHelperProxy.h>
#include <norvex/core/MessageBuffer.h>
#include <norvex/core/NodeCreator.h>
#include <norvex/core/TreeToClassFormatter.h>
#include <wire/Tree.h>

#include "EchoConnection.h"
#include "TestTypes.h"

namespace {

const EchoConnection::Bytes kStatus5 = {0, 0, 1, 0, 4, 0, 0, 0, 5, 0, 0, 0};

// An object whose two directions the test defines.
struct Scripted : TCMarshalable {
    std::function<bool(TCTreeBranch&)> write = [](TCTreeBranch&) { return true; };
    std::function<bool(TCTreeBranch&)> read = [](TCTreeBranch&) { return true; };

    bool ClassToTree(TCTreeBranch& branch) override { return write(branch); }
    bool TreeToClass(TCTreeBranch& branch) override { return read(branch); }
};

// An object's tree as Load takes it, from nodes that `fill` puts down.
template <class Fill> void FillBuffer(TCMessageBuffer& buffer, Fill fill) {
    wire::Buffer tree;
    wire::TreeWriter writer(tree);
    const std::size_t begin = writer.BeginBranch(0);
    fill(writer);
    writer.EndBranch(begin);
    buffer.Append(tree.GetData(), tree.GetSize());
}

struct LengthInfo : TILengthInfoContainer {
    void SetLength(int count) override { length = count; }
    int GetLength() const override { return length; }
    int length = -1;
};

} // namespace

TEST(Marshalling, AClassWithoutFieldsIsAnEmptyBranch) {
    TCMarshalable plain;
    unsigned long size = 5;
    EXPECT_FALSE(plain.GetSizeOfMarshalled(size));
    EXPECT_EQ(plain.GetMarshalableStorageType(), 0);
    TCMessageBuffer buffer;
    EXPECT_TRUE(plain.Store(&buffer));
    EXPECT_EQ(buffer.GetSize(), wire::kNodeHeaderSize);
    EXPECT_TRUE(plain.Load(&buffer));
    EXPECT_FALSE(plain.Store(nullptr));
    EXPECT_FALSE(plain.Load(nullptr));
}

TEST(Marshalling, AMissingChildLeavesTheFieldAsItWasWithoutAnError) {
    TCMessageBuffer buffer;
    FillBuffer(buffer, [](wire::TreeWriter& writer) { writer.PutValue(2, std::int32_t{42}); });
    Numbers numbers;
    numbers.byte = 9;
    numbers.wide = 99;
    EXPECT_TRUE(numbers.Load(&buffer));
    EXPECT_EQ(numbers.byte, 9);
    EXPECT_EQ(numbers.number, 42);
    EXPECT_EQ(numbers.wide, 99u);
}

TEST(Marshalling, AChildOfAnotherSizeOrKindLeavesTheFieldAndFails) {
    Numbers numbers;
    numbers.number = 7;
    TCMessageBuffer shorter;
    FillBuffer(shorter, [](wire::TreeWriter& writer) { writer.PutValue(2, std::int16_t{42}); });
    EXPECT_FALSE(numbers.Load(&shorter));
    EXPECT_EQ(numbers.number, 7);
    TCMessageBuffer array;
    FillBuffer(array, [](wire::TreeWriter& writer) { writer.PutLeaf(2, wire::NodeKind::Array, "abcd", 4); });
    EXPECT_FALSE(numbers.Load(&array));
    EXPECT_EQ(numbers.number, 7);
}

TEST(Marshalling, AFailedPushIsRememberedAndLaterOnesStillWork) {
    TCMessageBuffer buffer;
    FillBuffer(buffer, [](wire::TreeWriter& writer) {
        writer.PutValue(0, std::int16_t{1}); // 8 bits are expected
        writer.PutValue(1, std::int16_t{2});
    });
    Numbers numbers;
    EXPECT_FALSE(numbers.Load(&buffer));
    EXPECT_EQ(numbers.small, 2);
}

TEST(Marshalling, TagsAreFoundInAnyOrderAndTheFirstOfEqualOnesCounts) {
    TCMessageBuffer buffer;
    FillBuffer(buffer, [](wire::TreeWriter& writer) {
        writer.PutValue(5, std::int32_t{50});
        writer.PutValue(1, std::int32_t{10});
        writer.PutValue(1, std::int32_t{11});
        writer.PutValue(-3, std::int32_t{30});
        writer.PutValue(5, std::int32_t{51});
        writer.PutValue(2, std::int32_t{20});
    });
    for (const std::vector<int>& order :
         {std::vector<int>{1, 2, 5, -3}, {5, 2, 1, -3}, {-3, 1, 1, 5, 2, 5}, {2, 5, 1, 2}}) {
        Scripted object;
        object.read = [&](TCTreeBranch& branch) {
            TCTreeToClassFormatter formatter(branch);
            for (const int tag : order) {
                int value = 0;
                EXPECT_TRUE(formatter.PushValue(static_cast<short>(tag), sizeof value, &value));
                EXPECT_EQ(value, std::abs(tag) * 10) << tag;
            }
            int untouched = 77;
            EXPECT_TRUE(formatter.PushValue(4, sizeof untouched, &untouched));
            EXPECT_EQ(untouched, 77);
            return formatter.FillOut();
        };
        EXPECT_TRUE(object.Load(&buffer));
    }
}

TEST(Marshalling, AnArrayOfAnotherLengthIsNotCopied) {
    TCMessageBuffer buffer;
    FillBuffer(buffer, [](wire::TreeWriter& writer) { writer.PutLeaf(1, wire::NodeKind::Array, "abcdef", 6); });
    Scripted object;
    object.read = [](TCTreeBranch& branch) {
        TCTreeToClassFormatter formatter(branch);
        char bytes[16] = "untouched";
        EXPECT_FALSE(formatter.PushLengthArray(1, 16, bytes, nullptr));
        EXPECT_FALSE(formatter.PushLengthArray(1, 5, bytes, nullptr));
        EXPECT_FALSE(formatter.PushLengthArray(1, -1, bytes, nullptr));
        EXPECT_FALSE(formatter.PushArray(1, 3, 4, bytes));
        EXPECT_FALSE(formatter.PushArray(1, 0x40000000, 0x40000000, bytes));
        EXPECT_STREQ(bytes, "untouched");
        EXPECT_TRUE(formatter.PushArray(1, 3, 2, bytes));
        EXPECT_EQ(std::string(bytes, 6), "abcdef");
        EXPECT_FALSE(formatter.FillOut());
        return true;
    };
    EXPECT_TRUE(object.Load(&buffer));
}

TEST(Marshalling, AWrongLengthIsRefusedBeforeItsReaderSeesIt) {
    struct Case {
        std::int32_t length;
        std::size_t bytes;
    };
    for (const Case& each : {Case{-1, 0}, Case{-1, 3}, Case{0x7FFFFFFF, 3}, Case{0x7FFFFFFF, 0}, Case{4, 3}, Case{2, 3},
                             Case{0, 3}, Case{INT32_MIN, 3}}) {
        SCOPED_TRACE(std::to_string(each.length) + " over " + std::to_string(each.bytes));
        TCMessageBuffer buffer;
        FillBuffer(buffer, [&](wire::TreeWriter& writer) {
            writer.PutValue(0, each.length);
            if (each.bytes > 0)
                writer.PutLeaf(1, wire::NodeKind::Array, "abc", each.bytes);
        });
        std::string text = "as it was";
        TestText reader(text);
        EXPECT_FALSE(reader.Load(&buffer));
        EXPECT_EQ(text, "as it was");
    }
}

TEST(Marshalling, AWrongLengthWithinAnObjectOrAVectorIsRefused) {
    std::vector<Mixed> items(1);
    items[0].name = "abc";
    TestVector<Mixed> vector(items);
    TCMessageBuffer good;
    ASSERT_TRUE(vector.Store(&good));
    std::vector<unsigned char> bytes(static_cast<const unsigned char*>(good.GetData()),
                                     static_cast<const unsigned char*>(good.GetData()) + good.GetSize());
    const unsigned char three[] = {4, 0, 0, 0, 3, 0, 0, 0};
    const auto found = std::search(bytes.begin(), bytes.end(), std::begin(three), std::end(three));
    ASSERT_NE(found, bytes.end());
    found[7] = 0x7F;
    TCMessageBuffer bad;
    bad.Append(bytes.data(), bytes.size());
    std::vector<Mixed> read;
    TestVector<Mixed> reader(read);
    EXPECT_TRUE(reader.Load(&bad));
    ASSERT_EQ(read.size(), 1u) << "each child yields an element";
    EXPECT_EQ(read[0].name, "");
}

TEST(Marshalling, ATextWithoutChildrenLeavesTheTargetAsItWas) {
    TCMessageBuffer buffer;
    FillBuffer(buffer, [](wire::TreeWriter&) {});
    std::string text = "as it was";
    TestText reader(text);
    EXPECT_TRUE(reader.Load(&buffer));
    EXPECT_EQ(text, "as it was");
}

TEST(Marshalling, AnArraysLengthMayTravelInAContainerOfItsOwn) {
    LengthInfo info;
    char written[] = "abc";
    Scripted writer;
    writer.write = [&](TCTreeBranch& branch) {
        TCClassToTreeFormatter formatter(branch);
        EXPECT_TRUE(formatter.PushLengthArray(1, 3, written, &info));
        return formatter.Extract();
    };
    TCMessageBuffer buffer;
    ASSERT_TRUE(writer.Store(&buffer));
    EXPECT_EQ(info.length, 3);
    char read[8] = {};
    Scripted reader;
    reader.read = [&](TCTreeBranch& branch) {
        TCTreeToClassFormatter formatter(branch);
        EXPECT_TRUE(formatter.PushLengthArray(1, sizeof read, read, &info));
        info.length = 9; // more than there is room for
        EXPECT_FALSE(formatter.PushLengthArray(1, sizeof read, read, &info));
        return true;
    };
    EXPECT_TRUE(reader.Load(&buffer));
    EXPECT_STREQ(read, "abc");
}

TEST(Marshalling, AWriterRefusesInvalidContent) {
    Scripted object;
    object.write = [](TCTreeBranch& branch) {
        TCClassToTreeFormatter formatter(branch);
        int value = 1;
        EXPECT_FALSE(formatter.PushValue(0, -1, &value));
        EXPECT_FALSE(formatter.PushValue(0, 4, nullptr));
        EXPECT_FALSE(formatter.PushArray(0, -1, 4, &value));
        EXPECT_FALSE(formatter.PushArray(0, 0x7FFFFFFF, 0x7FFFFFFF, &value));
        EXPECT_FALSE(formatter.PushMarshalableClass(0, nullptr));
        EXPECT_TRUE(formatter.PushValue(0, 0, nullptr));
        EXPECT_FALSE(formatter.Extract());
        return false;
    };
    TCMessageBuffer buffer;
    EXPECT_FALSE(object.Store(&buffer));
    EXPECT_EQ(buffer.GetSize(), 0u);
}

TEST(Marshalling, NothingIsAppendedToABranchWhileItsChildIsWritten) {
    Scripted outer;
    Scripted inner;
    TCTreeBranch* around = nullptr;
    inner.write = [&](TCTreeBranch&) {
        TCClassToTreeFormatter formatter(*around);
        int value = 1;
        EXPECT_FALSE(formatter.PushValue(3, sizeof value, &value));
        return true;
    };
    outer.write = [&](TCTreeBranch& branch) {
        around = &branch;
        TCClassToTreeFormatter formatter(branch);
        EXPECT_TRUE(formatter.PushMarshalableClass(0, &inner));
        return formatter.Extract();
    };
    TCMessageBuffer buffer;
    EXPECT_TRUE(outer.Store(&buffer));
    EXPECT_EQ(buffer.GetSize(), 2 * wire::kNodeHeaderSize);
}

TEST(Marshalling, NestedObjectsEndAtTheDeepestBranch) {
    Scripted self;
    int depth = 0;
    self.write = [&](TCTreeBranch& branch) {
        ++depth;
        TCClassToTreeFormatter formatter(branch);
        formatter.PushMarshalableClass(0, &self);
        return true;
    };
    TCMessageBuffer buffer;
    EXPECT_TRUE(self.Store(&buffer));
    EXPECT_EQ(depth, wire::kMaxDepth);
    EXPECT_TRUE(wire::IsWellFormed(buffer.GetData(), buffer.GetSize()));
}

TEST(Marshalling, AnObjectThatCannotBeWrittenLeavesNothing) {
    Scripted inner;
    int value = 1;
    inner.write = [&](TCTreeBranch& branch) {
        TCClassToTreeFormatter(branch).PushValue(0, sizeof value, &value);
        return false;
    };
    Scripted outer;
    outer.write = [&](TCTreeBranch& branch) {
        TCClassToTreeFormatter formatter(branch);
        EXPECT_FALSE(formatter.PushMarshalableClass(0, &inner));
        return formatter.PushValue(1, sizeof value, &value);
    };
    TCMessageBuffer buffer;
    EXPECT_TRUE(outer.Store(&buffer));
    EXPECT_EQ(buffer.GetSize(), 2 * wire::kNodeHeaderSize + sizeof value);
}

TEST(Marshalling, ObjectsCountAmongABranchsChildren) {
    Scripted inner;
    Scripted outer;
    outer.write = [&](TCTreeBranch& branch) {
        return TCClassToTreeFormatter(branch).PushMarshalableClass(0, &inner) &&
               branch.AppendChild(new TCTreeLeafVar(-1, 1, "x"));
    };
    TCMessageBuffer buffer;
    ASSERT_TRUE(outer.Store(&buffer));
    outer.read = [](TCTreeBranch& branch) {
        branch.GetFirstChild();
        EXPECT_EQ(branch.GetNextChild()->GetTag(), 1);
        return true;
    };
    EXPECT_TRUE(outer.Load(&buffer));
}

TEST(Marshalling, WhatGoesOnAfterTheObjectIsNoObject) {
    Scripted object;
    TCMessageBuffer buffer;
    ASSERT_TRUE(object.Store(&buffer));
    ASSERT_TRUE(object.Load(&buffer));
    ASSERT_TRUE(object.Store(&buffer));
    EXPECT_FALSE(object.Load(&buffer));
}

TEST(Marshalling, ABranchTakesOwnershipOfALeaf) {
    Scripted object;
    object.write = [](TCTreeBranch& branch) {
        EXPECT_TRUE(branch.AppendChild(new TCTreeLeafVar(-1, 3, "abc")));
        EXPECT_TRUE(branch.AppendChild(new TCTreeLeafVar(9, 0, nullptr)));
        EXPECT_TRUE(branch.AppendChild(new TCTreeLeafVar(-1, 2, "de")));
        EXPECT_FALSE(branch.AppendChild(nullptr));
        EXPECT_FALSE(branch.AppendChild(new TCTreeLeafVar(70000, 1, "x")));
        return true;
    };
    TCMessageBuffer buffer;
    ASSERT_TRUE(object.Store(&buffer));
    object.read = [](TCTreeBranch& branch) {
        TCTreeNode* node = branch.GetFirstChild();
        EXPECT_EQ(node->GetTag(), 0);
        EXPECT_EQ(node->GetSize(), 3);
        EXPECT_EQ(node->GetElementCount(2), 1);
        EXPECT_EQ(node->GetElementCount(0), 0);
        char bytes[4] = {};
        EXPECT_FALSE(node->CopyTo(bytes, 4));
        EXPECT_FALSE(node->CopyTo(bytes, -1));
        EXPECT_TRUE(node->CopyTo(bytes, 3));
        EXPECT_STREQ(bytes, "abc");
        node = branch.GetNextChild();
        EXPECT_EQ(node->GetTag(), 9);
        EXPECT_EQ(node->GetSize(), 0);
        node = branch.GetNextChild();
        EXPECT_EQ(node->GetTag(), 2) << "numbered by its place";
        EXPECT_EQ(branch.GetNextChild(), nullptr);
        EXPECT_FALSE(branch.AppendChild(new TCTreeLeafVar(0, 1, "x"))) << "it is one that is read";
        return true;
    };
    EXPECT_TRUE(object.Load(&buffer));
}

TEST(Marshalling, CreatorsMakeAndFillNodes) {
    TCMarshalableNodeCreator marshalable;
    EXPECT_EQ(marshalable.GetKind(), 1);
    EXPECT_FALSE(marshalable.HasElementCount());
    Scripted unwritable;
    unwritable.write = [](TCTreeBranch&) { return false; };
    EXPECT_EQ(marshalable.CreateNode(&unwritable, sizeof unwritable, -1, 1), nullptr);
    EXPECT_EQ(marshalable.CreateNode(nullptr, 8, -1, 1), nullptr);
    Numbers numbers;
    numbers.number = 5;
    TCTreeNode* node = marshalable.CreateNode(&numbers, sizeof numbers, 3, 1);
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->GetTag(), 3);
    EXPECT_EQ(node->GetSize(), 63);
    Numbers copy;
    EXPECT_TRUE(marshalable.FillElement(&copy, sizeof copy, sizeof copy, node));
    EXPECT_TRUE(copy == numbers);

    DefaultNodeCreator plain;
    EXPECT_EQ(plain.GetKind(), 0);
    EXPECT_FALSE(plain.HasElementCount());
    int values[] = {1, 2, 3};
    node = plain.CreateNode(values, sizeof values[0], -1, 3);
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->GetElementCount(sizeof values[0]), 3);
    int read[3] = {};
    EXPECT_FALSE(plain.FillElement(read, sizeof read[0], sizeof read[0], node));
    EXPECT_EQ(read[0], 0);
    EXPECT_TRUE(plain.FillElement(read, sizeof read[0], sizeof read, node));
    EXPECT_EQ(read[2], 3);
    EXPECT_FALSE(marshalable.FillElement(&copy, sizeof copy, sizeof copy, node)) << "no branch";
}

TEST(Marshalling, RunNeedsAConnectionAndAnExchange) {
    EchoConnection connection;
    connection.reply = kStatus5;
    int status = -1;
    const auto run = [&](NorvexAPIConnection* over) {
        TCMarshallingHelperProxy helper;
        helper.PushValue(MARSHALLING_OUT, sizeof status, &status);
        std::string interfaceName = "i";
        return helper.Run(over, interfaceName, "m", 0, false);
    };
    EXPECT_FALSE(run(nullptr));
    connection.succeeds = false;
    EXPECT_FALSE(run(&connection));
    EXPECT_EQ(status, -1);
    connection.succeeds = true;
    EXPECT_TRUE(run(&connection));
    EXPECT_EQ(status, 5);
    connection.reply.clear();
    EXPECT_TRUE(run(&connection)) << "no answers";
    EXPECT_EQ(status, 5);
}

// Nothing of a truncated reply is used; of one with a value of the wrong size, the values before
// it.
TEST(Marshalling, WhatWasReadBeforeAMalformedValueStands) {
    EchoConnection connection;
    connection.reply = kStatus5;
    // Two bytes for an int.
    connection.reply.insert(connection.reply.end(), {1, 0, 1, 0, 2, 0, 0, 0, 6, 0});
    const auto expectRead = [&](int expected) {
        int status = -1;
        int value = 8;
        TCMarshallingHelperProxy helper;
        helper.PushValue(MARSHALLING_OUT, sizeof status, &status);
        helper.PushValue(MARSHALLING_OUT, sizeof value, &value);
        std::string interfaceName = "i";
        EXPECT_FALSE(helper.Run(&connection, interfaceName, "m", 0, false));
        EXPECT_EQ(status, expected) << connection.reply.size();
        EXPECT_EQ(value, 8);
    };
    expectRead(5);
    while (connection.reply.size() > kStatus5.size() + 1) {
        connection.reply.pop_back();
        expectRead(-1);
    }
}

TEST(Marshalling, InArgumentsAreNeverWrittenTo) {
    EchoConnection connection;
    connection.reply = kStatus5;
    int value = 8;
    TCMarshallingHelperProxy helper;
    helper.PushValue(MARSHALLING_IN, sizeof value, &value);
    std::string interfaceName = "i";
    EXPECT_TRUE(helper.Run(&connection, interfaceName, "m", 0, false));
    EXPECT_EQ(value, 8);
}

TEST(Marshalling, AnArgumentThatCannotBeWrittenMakesNoCall) {
    EchoConnection connection;
    connection.methodId = -1;
    Scripted unwritable;
    unwritable.write = [](TCTreeBranch&) { return false; };
    TCMarshallingHelperProxy helper;
    helper.PushMarshalableClass(MARSHALLING_IN, &unwritable);
    std::string interfaceName = "i";
    EXPECT_FALSE(helper.Run(&connection, interfaceName, "m", 4, false));
    EXPECT_EQ(connection.methodId, -1);
}

TEST(Marshalling, AHelperThatRunsAgainSendsItsArgumentsAsTheyAreThen) {
    EchoConnection connection;
    TCMarshallingHelperProxy helper;
    std::int32_t value = 1;
    helper.PushValue(MARSHALLING_IN, sizeof value, &value);
    std::string interfaceName = "test";
    ASSERT_TRUE(helper.Run(&connection, interfaceName, "Again", 0, false));
    EchoConnection::Bytes expected = connection.call;
    expected[wire::kNodeHeaderSize] = 2;
    value = 2;
    ASSERT_TRUE(helper.Run(&connection, interfaceName, "Again", 0, false));
    EXPECT_EQ(connection.call, expected);
}

TEST(Marshalling, HelpersMayBeNested) {
    EchoConnection connection;
    connection.answer = [](const EchoConnection::Bytes& call) { return ReplyWithArgument(call, 1, 0); };
    std::string interfaceName = "i";
    int inner = 0;
    Scripted caller;
    caller.write = [&](TCTreeBranch&) {
        int sent = 21;
        TCMarshallingHelperProxy helper;
        helper.PushValue(MARSHALLING_OUT, sizeof inner, &inner);
        helper.PushValue(MARSHALLING_IN, sizeof sent, &sent);
        return helper.Run(&connection, interfaceName, "inner", 0, false);
    };
    int outer = 0;
    int sent = 42;
    TCMarshallingHelperProxy helper;
    helper.PushValue(MARSHALLING_OUT, sizeof outer, &outer);
    helper.PushValue(MARSHALLING_IN, sizeof sent, &sent);
    helper.PushMarshalableClass(MARSHALLING_IN, &caller);
    EXPECT_TRUE(helper.Run(&connection, interfaceName, "outer", 0, false));
    EXPECT_EQ(inner, 21);
    EXPECT_EQ(outer, 42);
}
