#include "Replies.h"

#include <interfaces/Interfaces.h>
#include <wire/Tree.h>

namespace {

std::span<const std::uint8_t> replyTree;
int replyCount = 0;

void OpenOrClose(FakeDaemon::Connection& connection, const wire::MessageHeader& header) {
    wire::Buffer tree;
    wire::TreeWriter writer(tree);
    writer.PutValue(0, std::int32_t{0});
    writer.PutValue(1, std::uint32_t{1});
    connection.Send(header, tree.GetData(), tree.GetSize());
}

void Answer(FakeDaemon::Connection& connection, const wire::Message& message) {
    if (!FakeDaemon::Welcome(connection, message))
        AnswerCall(connection, message, replyTree);
}

} // namespace

void AnswerCall(FakeDaemon::Connection& connection, const wire::Message& message, std::span<const std::uint8_t> tree) {
    wire::MessageHeader header;
    header.kind = wire::MessageKind::Reply;
    header.methodId = message.header.methodId;
    header.serial = message.header.serial;
    if (message.interfaceName == interfaces::kTable<interfaces::NorvexSessionMethod>.name)
        return OpenOrClose(connection, header);
    ++replyCount;
    connection.Send(header, tree.data(), tree.size());
}

void ReplyWith(std::span<const std::uint8_t> tree) {
    replyTree = tree;
    replyCount = 0;
    FakeDaemon::Get().SetAnswer(Answer);
}

int GetReplyCount() {
    return replyCount;
}
