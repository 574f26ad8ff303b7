#include "Replies.h"

#include <wire/Tree.h>

namespace {

std::span<const std::uint8_t> replyTree;
int replyCount = 0;

void OpenOrClose(FarSide::Line& line, const wire::MessageHeader& header) {
    wire::Buffer tree;
    wire::TreeWriter writer(tree);
    writer.PutValue(0, std::int32_t{0});
    writer.PutValue(1, std::uint32_t{1});
    line.Send(header, tree.GetData(), tree.GetSize());
}

void Answer(FarSide::Line& line, const wire::Message& message) {
    if (!FarSide::Welcome(line, message))
        AnswerCall(line, message, replyTree);
}

} // namespace

void AnswerCall(FarSide::Line& line, const wire::Message& message,
                std::span<const std::uint8_t> tree) {
    wire::MessageHeader header;
    header.kind = wire::MessageKind::Reply;
    header.methodId = message.header.methodId;
    header.serial = message.header.serial;
    if (message.interfaceName == "com.holvi.INorvexSession")
        return OpenOrClose(line, header);
    ++replyCount;
    line.Send(header, tree.data(), tree.size());
}

void ReplyWith(std::span<const std::uint8_t> tree) {
    replyTree = tree;
    replyCount = 0;
    FarSide::Get().SetAnswer(Answer);
}

int GetReplyCount() {
    return replyCount;
}
