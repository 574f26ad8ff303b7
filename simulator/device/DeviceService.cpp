#include "DeviceService.h"

#include <memory>

#include <norvex/core/MessageBuffer.h>
#include <wire/Tree.h>

#include "Peer.h"

namespace deviceservice {

namespace {

const std::string& InterfaceName() {
    static const auto* name = new std::string("com.holvi.IDevice");
    return *name;
}

// Arguments by place: the status, the text and, where one is asked for, the value.
constexpr std::int16_t kStatus = 0;
constexpr std::int16_t kText = 1;
constexpr std::int16_t kValue = 2;

} // namespace

int Call(const std::string& method, std::int16_t methodId, const char* text, int* value) {
    int status = kNoAnswer;
    wire::Buffer tree;
    wire::TreeWriter writer(tree);
    writer.PutValue(kStatus, status);
    writer.PutText(kText, text, wire::Direction::In);
    if (value != nullptr)
        writer.PutValue(kValue, *value);
    TCMessageBuffer arguments;
    arguments.Append(tree.GetData(), tree.GetSize());

    // Never given up: whoever asks once asks again, and the process may be ending.
    static const auto* peer = new std::shared_ptr<Peer>(Peer::Find());
    TCMessageBuffer reply;
    const Failure failure =
        (*peer)->Call({InterfaceName(), method, methodId}, nullptr, arguments, reply);
    if (failure != Failure::None) {
        (*peer)->Report(failure, InterfaceName(), method);
        return kNoAnswer;
    }
    int answer = 0;
    bool hasAnswer = false;
    wire::NodeCursor cursor(reply.GetData(), reply.GetSize());
    wire::Node node;
    while (cursor.Next(node)) {
        if (node.tag == kStatus)
            node.Get(status);
        else if (node.tag == kValue)
            hasAnswer = node.Get(answer);
    }
    if (value != nullptr && status == 0) {
        if (!hasAnswer)
            return kNoAnswer;
        *value = answer;
    }
    return status;
}

} // namespace deviceservice
