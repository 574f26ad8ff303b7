// A call of each operation that the simulated TV serves, look-ups included: the first byte chooses
// the operation, the rest is the call's tree. Every call is answered. One with malformed arguments
// is answered without a tree and changes nothing; an answer holds only out arguments, each of
// its type. The journal can describe every call.

#include <memory>
#include <optional>

#include <sys/socket.h>

#include <nlohmann/json.hpp>
#include <wire/Packet.h>

#include "FuzzedTv.h"
#include "Input.h"
#include "MessagePackets.h"
#include "Require.h"

namespace {

using interfaces::NorvexSessionMethod;

std::vector<const sim::Operation*> FindOperations() {
    std::vector<const sim::Operation*> methods;
    for (const sim::Interface* interface : FuzzedTv::Get().GetContext().dispatcher.GetInterfaces())
        for (const auto& method : interface->GetOperations())
            methods.push_back(method.get());
    return methods;
}

// A client, with one connection that has said hello.
class Caller {
public:
    Caller() : m_socket(FuzzedTv::Get().Connect()) {
        wire::Buffer tree;
        wire::TreeWriter writer(tree);
        writer.PutValue(wire::kHelloVersion, wire::kProtocolVersion);
        writer.PutLeaf(wire::kHelloToken, wire::NodeKind::Array, "0123456789abcdef", wire::kTokenSize);
        writer.PutValue(wire::kHelloRole, wire::Role::Calls);
        Send(wire::MessageKind::Hello, {}, {}, 0, {tree.GetData(), tree.GetSize()});
        REQUIRE(Take().header.kind == wire::MessageKind::Welcome);
    }

    // The reply, valid until the next call.
    wire::Message Call(const std::string& interface, const std::string& method, std::int16_t id,
                       std::span<const std::uint8_t> tree) {
        ++m_serial;
        Send(wire::MessageKind::Call, interface, method, id, tree);
        const wire::Message reply = Take();
        REQUIRE(reply.header.kind == wire::MessageKind::Reply && reply.header.serial == m_serial);
        REQUIRE(wire::IsWellFormed(reply.tree, reply.header.treeSize));
        return reply;
    }
    void Open(const std::string& interface) {
        wire::Buffer tree;
        wire::TreeWriter writer(tree);
        writer.PutValue(0, std::int32_t{-1});
        writer.PutValue(1, std::uint32_t{0});
        writer.PutText(2, interface, wire::Direction::In);
        writer.PutValue(3, std::int32_t{1}, wire::Direction::In);
        writer.PutValue(4, std::int32_t{0}, wire::Direction::In);
        m_session = 0;
        const wire::Message reply =
            Call(std::string(interfaces::kTable<NorvexSessionMethod>.name),
                 std::string(GetMethodName(NorvexSessionMethod::Open)),
                 static_cast<std::int16_t>(NorvexSessionMethod::Open), {tree.GetData(), tree.GetSize()});
        wire::NodeCursor cursor(reply.tree, reply.header.treeSize);
        wire::Node node;
        while (cursor.Next(node))
            if (node.tag == 1)
                node.Get(m_session);
        REQUIRE(m_session != 0);
    }
    // The TV is as new, and this client has no sessions.
    void Reset() {
        sim::Context& context = FuzzedTv::Get().GetContext();
        context.clients.ForEach([&](sim::Client& client) { context.sessions.CloseAll(client); });
        context.Reset();
        m_session = 0;
    }

private:
    void Send(wire::MessageKind kind, std::string_view interface, std::string_view method, std::int16_t id,
              std::span<const std::uint8_t> tree) {
        wire::MessageHeader header;
        header.kind = kind;
        header.methodId = id;
        header.serial = m_serial;
        header.session = m_session;
        for (const Packet& packet : ToPackets(header, interface, method, tree.data(), tree.size()))
            REQUIRE(send(m_socket, packet.data(), packet.size(), MSG_NOSIGNAL | MSG_DONTWAIT) > 0);
        FuzzedTv::Get().Settle();
    }
    wire::Message Take() {
        static unsigned char packet[wire::kPacketHeaderSize + wire::kMaxPacketPayload];
        auto result = wire::PacketAssembler::Result::NeedMore;
        while (result != wire::PacketAssembler::Result::Complete) {
            const ssize_t size = recv(m_socket, packet, sizeof packet, MSG_DONTWAIT);
            REQUIRE(size > 0);
            result = m_assembler.Feed(packet, static_cast<std::size_t>(size));
            REQUIRE(result != wire::PacketAssembler::Result::Malformed);
            FuzzedTv::Get().Settle();
        }
        wire::Message message;
        REQUIRE(wire::ParseMessage(m_assembler.GetMessage().GetData(), m_assembler.GetMessage().GetSize(), message));
        return message;
    }

    int m_socket;
    std::uint32_t m_serial = 0;
    std::uint32_t m_session = 0;
    wire::PacketAssembler m_assembler;
};

void CheckReply(const sim::Operation& method, const wire::Message& reply) {
    wire::NodeCursor cursor(reply.tree, reply.header.treeSize);
    wire::Node node;
    while (cursor.Next(node)) {
        REQUIRE(node.tag >= 0 && static_cast<std::size_t>(node.tag) < method.arguments.size());
        const sim::Argument& argument = method.arguments[static_cast<std::size_t>(node.tag)];
        REQUIRE(argument.direction == wire::Direction::Out && argument.type->Fits(node));
    }
}

// What of the state a call may not change when it is refused, without what goes on by itself.
nlohmann::json DescribeState() {
    nlohmann::json state = FuzzedTv::Get().GetContext().DescribeState();
    state["daemon"].erase("calls");
    state["daemon"].erase("sequence");
    state["clock"].erase("now");
    return state;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::vector<const sim::Operation*> methods = FindOperations();
    static Caller caller;
    const sim::Journal& journal = FuzzedTv::Get().GetContext().journal;
    Input input(data, size);
    const sim::Operation& method = *methods[input.Byte() % methods.size()];
    if (method.interface->GetCalls() == sim::Interface::Calls::ToSession)
        caller.Open(method.interface->GetName());
    const auto tree = input.Rest();
    const bool isCall = sim::ArgumentReader(method.arguments, tree.data(), tree.size()).IsValid();
    // The state takes much longer to describe than the call to be made: some of the inputs.
    std::optional<nlohmann::json> before;
    if (!isCall && size % 16 == 0)
        before = DescribeState();

    const wire::Message reply = caller.Call(method.interface->GetName(), method.name, method.id, tree);
    CheckReply(method, reply);
    REQUIRE(isCall || reply.header.treeSize == 0);
    REQUIRE(!before || *before == DescribeState());
    REQUIRE(journal.GetEnd() > journal.GetBegin());
    REQUIRE(
        !journal.Describe(journal.GetEnd() - 1).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace).empty());
    caller.Reset();
    return 0;
}
