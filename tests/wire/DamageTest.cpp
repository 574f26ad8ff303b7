// Every message, cut at each byte and with each byte changed, is refused or read without harm. The
// sanitizers' builds are what sees the harm; here it is seen that nothing is made up: whatever is
// read fits into the bytes that came.

#include <gtest/gtest.h>

#include <norvex/core/MarshallingHelperProxy.h>
#include <wire/Packet.h>
#include <wire/Tree.h>

#include "EchoConnection.h"
#include "TestTypes.h"

namespace {

using Bytes = EchoConnection::Bytes;

constexpr unsigned char kChanges[] = {0xFF, 0x01, 0x80, 0x7F, 0x10};

// The out arguments of a call that has one of each kind.
struct Answers {
    std::int32_t status = -1;
    std::uint64_t wide = 0;
    std::string screen = "as it was";
    std::vector<Group> groups;
    Mixed mixed;
};

bool Read(const Bytes& reply, Answers& answers) {
    EchoConnection connection;
    connection.reply = reply;
    TestText screen(answers.screen);
    TestVector<Group> groups(answers.groups);
    TCMarshallingHelperProxy helper;
    helper.PushValue(MARSHALLING_OUT, sizeof answers.status, &answers.status);
    helper.PushValue(MARSHALLING_OUT, sizeof answers.wide, &answers.wide);
    helper.PushMarshalableClass(MARSHALLING_OUT, &screen);
    helper.PushMarshalableClass(MARSHALLING_OUT, &groups);
    helper.PushMarshalableClass(MARSHALLING_OUT, &answers.mixed);
    std::string interfaceName = "test";
    return helper.Run(&connection, interfaceName, "Damage", 0, false);
}

// A reply as the far side writes it.
Bytes MakeReply() {
    std::mt19937 random(20260305);
    Answers answers;
    answers.status = 3;
    answers.wide = 0x0102030405060708;
    answers.screen = "a screen of the debug menu\n";
    for (int i = 0; i < 2; ++i) {
        Group& group = answers.groups.emplace_back();
        group.title = "group";
        group.members.push_back(Mixed::Random(random));
    }
    answers.mixed = Mixed::Random(random);
    EchoConnection connection;
    TestText screen(answers.screen);
    TestVector<Group> groups(answers.groups);
    TCMarshallingHelperProxy helper;
    helper.PushValue(MARSHALLING_IN, sizeof answers.status, &answers.status);
    helper.PushValue(MARSHALLING_IN, sizeof answers.wide, &answers.wide);
    helper.PushMarshalableClass(MARSHALLING_IN, &screen);
    helper.PushMarshalableClass(MARSHALLING_IN, &groups);
    helper.PushMarshalableClass(MARSHALLING_IN, &answers.mixed);
    std::string interfaceName = "test";
    EXPECT_TRUE(helper.Run(&connection, interfaceName, "Damage", 0, false));
    return connection.call;
}

void ExpectNothingMadeUp(const Bytes& reply, const Answers& answers) {
    ASSERT_LE(answers.screen.size(), std::max<std::size_t>(reply.size(), 9));
    ASSERT_LE(answers.mixed.name.size(), reply.size());
    ASSERT_LE(answers.groups.size(), reply.size() / wire::kNodeHeaderSize);
    for (const Group& group : answers.groups) {
        ASSERT_LE(group.title.size(), reply.size());
        ASSERT_LE(group.members.size(), reply.size() / wire::kNodeHeaderSize);
    }
}

Bytes MakePacket(const Bytes& tree) {
    wire::MessageHeader header;
    header.kind = wire::MessageKind::Call;
    header.serial = 1;
    wire::PacketSender sender(header, "com.holvi.IDebugPrintControl", "Execute", tree.data(),
                              tree.size());
    iovec pieces[wire::PacketSender::kMaxPieces];
    Bytes packet;
    for (int i = 0, count = sender.Next(pieces); i < count; ++i) {
        const auto* bytes = static_cast<const unsigned char*>(pieces[i].iov_base);
        packet.insert(packet.end(), bytes, bytes + pieces[i].iov_len);
    }
    return packet;
}

// Walks all of a tree as a reader would that trusts it.
std::size_t CountNodes(wire::NodeCursor cursor) {
    std::size_t count = 0;
    wire::Node node;
    while (cursor.Next(node))
        count += 1 + (node.IsBranch() ? CountNodes(wire::NodeCursor(node)) : 0);
    return count;
}

} // namespace

TEST(Damage, TheUndamagedReplyIsReadWhole) {
    Answers answers;
    ASSERT_TRUE(Read(MakeReply(), answers));
    EXPECT_EQ(answers.status, 3);
    EXPECT_EQ(answers.screen, "a screen of the debug menu\n");
    ASSERT_EQ(answers.groups.size(), 2u);
    EXPECT_EQ(answers.groups[1].title, "group");
    EXPECT_EQ(answers.groups[1].members.size(), 1u);
}

TEST(Damage, ATreeCutAtAnyByte) {
    const Bytes reply = MakeReply();
    std::vector<std::size_t> ends = {0};
    wire::NodeCursor cursor(reply.data(), reply.size());
    wire::Node node;
    while (cursor.Next(node))
        ends.push_back(static_cast<std::size_t>(cursor.GetPlace() - reply.data()));
    for (std::size_t size = 0; size < reply.size(); ++size) {
        const Bytes cut(reply.begin(), reply.begin() + static_cast<std::ptrdiff_t>(size));
        Answers answers;
        const bool isWhole = std::find(ends.begin(), ends.end(), size) != ends.end();
        ASSERT_EQ(Read(cut, answers), isWhole) << "cut at " << size;
        if (!isWhole) {
            ASSERT_EQ(answers.status, -1) << "nothing of a bad tree is used";
        }
    }
}

TEST(Damage, ATreeWithAnyByteChanged) {
    const Bytes reply = MakeReply();
    for (std::size_t place = 0; place < reply.size(); ++place) {
        for (const unsigned char change : kChanges) {
            Bytes changed = reply;
            changed[place] ^= change;
            Answers answers;
            Read(changed, answers);
            ExpectNothingMadeUp(changed, answers);
        }
    }
}

TEST(Damage, AMessageCutAtAnyByteIsRefused) {
    const Bytes packet = MakePacket(MakeReply());
    for (std::size_t size = 0; size < packet.size(); ++size) {
        wire::PacketAssembler assembler;
        ASSERT_EQ(assembler.Feed(packet.data(), size), wire::PacketAssembler::Result::Malformed)
            << size;
        wire::Message message;
        if (size >= wire::kPacketHeaderSize) {
            ASSERT_FALSE(wire::ParseMessage(packet.data() + wire::kPacketHeaderSize,
                                            size - wire::kPacketHeaderSize, message));
        }
    }
}

TEST(Damage, AMessageWithAnyByteChanged) {
    const Bytes packet = MakePacket(MakeReply());
    for (std::size_t place = 0; place < packet.size(); ++place) {
        for (const unsigned char change : kChanges) {
            Bytes changed = packet;
            changed[place] ^= change;
            wire::PacketAssembler assembler;
            wire::Message message;
            if (assembler.Feed(changed.data(), changed.size()) !=
                wire::PacketAssembler::Result::Complete)
                continue;
            const wire::Buffer& bytes = assembler.GetMessage();
            ASSERT_TRUE(wire::ParseMessage(bytes.GetData(), bytes.GetSize(), message));
            if (wire::IsWellFormed(message.tree, message.header.treeSize)) {
                ASSERT_LE(CountNodes({message.tree, message.header.treeSize}),
                          message.header.treeSize / wire::kNodeHeaderSize);
            }
        }
    }
}

TEST(Damage, ATreeOfBranchesWithoutEndIsRefused) {
    wire::Buffer tree;
    wire::TreeWriter writer(tree);
    std::vector<std::size_t> begun;
    for (int depth = 0; depth < wire::kMaxDepth; ++depth)
        begun.push_back(writer.BeginBranch(0));
    const auto endAll = [&] {
        for (auto begin = begun.rbegin(); begin != begun.rend(); ++begin)
            writer.EndBranch(*begin);
    };
    endAll();
    EXPECT_TRUE(wire::IsWellFormed(tree.GetData(), tree.GetSize()));
    begun.push_back(writer.BeginBranch(0));
    endAll();
    EXPECT_FALSE(wire::IsWellFormed(tree.GetData(), tree.GetSize()));
}

TEST(Damage, RandomBytesAreRefusedOrReadWithoutHarm) {
    std::mt19937 random(20260306);
    for (int round = 0; round < 20000; ++round) {
        Bytes bytes(random() % 80);
        for (unsigned char& byte : bytes) {
            // Mostly small numbers, as lengths and kinds are.
            byte = static_cast<unsigned char>(random() % 4 == 0 ? random() : random() % 5);
        }
        Answers answers;
        Read(bytes, answers);
        ExpectNothingMadeUp(bytes, answers);
    }
}
