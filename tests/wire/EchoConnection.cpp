#include "EchoConnection.h"

#include <norvex/core/MessageBuffer.h>
#include <wire/Tree.h>

bool EchoConnection::Exchange(const std::string& calledInterface, const std::string& calledMethod, short calledId, bool,
                              const TCMessageBuffer& arguments, TCMessageBuffer& to) {
    interfaceName = calledInterface;
    method = calledMethod;
    methodId = calledId;
    const auto* bytes = static_cast<const unsigned char*>(arguments.GetData());
    call.assign(bytes, bytes + arguments.GetSize());
    if (answer)
        reply = answer(call);
    to.Clear();
    to.Append(reply.data(), reply.size());
    return succeeds;
}

EchoConnection::Bytes ReplyWithArgument(const EchoConnection::Bytes& call, int inPlace, int outPlace) {
    wire::Buffer tree;
    wire::TreeWriter writer(tree);
    wire::NodeCursor cursor(call.data(), call.size());
    wire::Node node;
    while (cursor.Next(node)) {
        if (node.tag == inPlace)
            writer.PutLeaf(static_cast<std::int16_t>(outPlace), node.kind, node.data, node.size);
    }
    return {tree.GetData(), tree.GetData() + tree.GetSize()};
}
