// What a client's connection for calls receives, packet by packet: welcomes, the answer to a session's
// opening, replies, in any order and shape. Each message of the client is answered by the input's
// next packets, or by the connection's end. Whatever comes, each call ends; a later one on an
// orderly connection is answered.

#include <cstdlib>

#include <norvex/client/NorvexAPI.h>
#include <norvex/client/NorvexAPIConnection.h>
#include <norvex/client/ReferenceCount.h>
#include <norvex/core/MarshallingHelperProxy.h>
#include <wire/Tree.h>

#include "FakeDaemon.h"
#include "Packets.h"
#include "Replies.h"
#include "Require.h"

namespace {

bool EndsWaiting(const wire::Buffer& bytes, const wire::Message& asked) {
    wire::Message answer;
    return wire::ParseMessage(bytes.GetData(), bytes.GetSize(), answer) &&
           (answer.header.kind == wire::MessageKind::Welcome || answer.header.serial == asked.header.serial);
}

// What the daemon does with a message, from the input's next byte.
void Answer(Input& input, FakeDaemon::Connection& connection, const wire::Message& message) {
    const std::uint8_t order = input.Byte();
    // Mostly an orderly welcome, to come to what follows it.
    if ((order & 1) != 0 && FakeDaemon::Welcome(connection, message))
        return;
    wire::PacketAssembler sent;
    bool isAnswer = false;
    for (int count = order >> 1 & 3; count >= 0 && !input.IsEmpty(); --count) {
        for (const Packet& packet : TakePackets(input, message.header.serial)) {
            isAnswer = connection.SendPacket(packet) &&
                       sent.Feed(packet.data(), packet.size()) == wire::PacketAssembler::Result::Complete &&
                       EndsWaiting(sent.GetMessage(), message);
        }
    }
    // Whoever has been sent too little would have to wait for the rest.
    if (!isAnswer)
        connection.Close();
}

// A call without a session; what came of it has come whole.
void CallOnce(NorvexAPIConnection& connection) {
    int status = -1;
    int value = 5;
    TCMarshallingHelperProxy helper;
    helper.PushValue(MARSHALLING_OUT, sizeof status, &status);
    helper.PushValue(MARSHALLING_OUT, sizeof value, &value);
    std::string interfaceName = "fuzz";
    const bool exchanged = helper.Run(&connection, interfaceName, "Call", 0, false);
    REQUIRE(exchanged || value == 5 || status != -1);
}

void CallSession() {
    IReferenceCount* references = nullptr;
    const int created = NorvexAPI::CreateReferenceCount(PROFILE_MAIN, 0, &references);
    REQUIRE((created == 0) == (references != nullptr));
    if (references == nullptr)
        return;
    int count = 5;
    references->GetReferenceCount(&count);
    NorvexAPI::Destroy(references);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const bool hasSession = (input.Byte() & 1) != 0;
    FakeDaemon::Get().SetAnswer([&input](FakeDaemon::Connection& connection, const wire::Message& message) {
        Answer(input, connection, message);
    });
    NorvexAPIConnection client("", "", true);
    for (int call = 0; call < 3; ++call)
        if (hasSession)
            CallSession();
        else
            CallOnce(client);

    // Nothing of that stands in the way of a TV that answers.
    wire::Buffer tree;
    wire::TreeWriter(tree).PutValue(0, std::int32_t{9});
    ReplyWith({tree.GetData(), tree.GetSize()});
    int status = -1;
    TCMarshallingHelperProxy helper;
    helper.PushValue(MARSHALLING_OUT, sizeof status, &status);
    std::string interfaceName = "fuzz";
    REQUIRE(helper.Run(&client, interfaceName, "Call", 0, false) && status == 9);
    FakeDaemon::Get().CloseAll();
    return 0;
}
