#include "TestTv.h"

#include <array>
#include <cstring>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>
#include <wire/Packet.h>

#include "SessionInterface.h"

namespace {

struct NoOwner : sim::Connection::Owner {
    void MessageArrived(sim::Connection&, const wire::Message&) override {}
    void ConnectionEnded(sim::Connection&, const std::string&) override {}
};

NoOwner noOwner;

} // namespace

// A connection and its far end.
struct TestClient::Line {
    Line() {
        std::array<int, 2> ends{};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK, 0, ends.data()), 0);
        farEnd = ends[1];
        connection = std::make_unique<sim::Connection>(ends[0], 1, noOwner);
    }
    ~Line() { close(farEnd); }

    // The next message that has come; empty: none.
    std::string Take() {
        wire::PacketAssembler assembler;
        std::array<unsigned char, wire::kPacketHeaderSize + wire::kMaxPacketPayload> packet{};
        for (;;) {
            const ssize_t size = recv(farEnd, packet.data(), packet.size(), 0);
            if (size <= 0)
                return {};
            if (assembler.Feed(packet.data(), static_cast<std::size_t>(size)) ==
                wire::PacketAssembler::Result::Complete)
                break;
        }
        const wire::Buffer& message = assembler.GetMessage();
        return {reinterpret_cast<const char*>(message.GetData()), message.GetSize()};
    }

    std::unique_ptr<sim::Connection> connection;
    int farEnd;
};

std::optional<wire::Node> Reply::Find(std::int16_t place) const {
    wire::Message message;
    if (!wire::ParseMessage(m_message.data(), m_message.size(), message))
        return {};
    wire::NodeCursor cursor(message.tree, message.header.treeSize);
    wire::Node node;
    while (cursor.Next(node)) {
        if (node.tag == place)
            return node;
    }
    return {};
}

std::vector<std::int32_t> Reply::Ids(std::int16_t place) const {
    const auto branch = Find(place);
    EXPECT_TRUE(branch && branch->IsBranch());
    wire::Node array;
    std::vector<std::int32_t> ids;
    if (branch && wire::NodeCursor(*branch).Next(array)) {
        ids.resize(array.size / sizeof(std::int32_t));
        if (!ids.empty())
            std::memcpy(ids.data(), array.data, array.size);
    }
    return ids;
}

TestClient::TestClient(TestTv& tv) : m_tv(tv), m_calls(std::make_unique<Line>()) {
    static unsigned char clients = 0;
    m_client = &m_tv.context.clients.Connected(sim::Token{++clients});
    m_calls->connection->client = m_client;
}

TestClient::~TestClient() {
    if (m_signals != nullptr)
        m_tv.context.signals.Detach(*m_signals->connection);
}

Reply TestClient::Exchange(const std::string& interface, std::uint32_t session,
                           const std::string& method, std::int16_t id, const CallTree& arguments) {
    wire::Message message;
    message.header.session = session;
    message.header.methodId = id;
    message.header.treeSize = static_cast<std::uint32_t>(arguments.GetBytes().GetSize());
    message.interfaceName = interface;
    message.method = method;
    message.tree = arguments.GetBytes().GetData();
    m_tv.context.dispatcher.Handle(*m_calls->connection, message);
    return Reply(m_calls->Take());
}

std::uint32_t TestClient::Open(const std::string& interface, std::int32_t profile,
                               std::uint16_t screen) {
    const Reply reply = Exchange("com.holvi.INorvexSession", 0, "Open", 0,
                                 CallTree()
                                     .Out(std::uint32_t{0})
                                     .Text("com.holvi." + interface)
                                     .In(profile)
                                     .In(std::int32_t{screen}));
    return reply.Status() == 0 ? reply.Get<std::uint32_t>(1).value_or(0) : 0;
}

void TestClient::Close(std::uint32_t session) {
    Exchange("com.holvi.INorvexSession", 0, "Close", 1, CallTree().In(session));
}

Reply TestClient::Call(std::uint32_t session, const std::string& method, std::int16_t id,
                       const CallTree& arguments) {
    const sim::Session* opened = m_tv.context.sessions.Find(session);
    EXPECT_NE(opened, nullptr);
    return Exchange(opened == nullptr ? "" : opened->interface->GetName(), session, method, id,
                    arguments);
}

void TestClient::ListenTo(std::uint32_t session) {
    m_signals = std::make_unique<Line>();
    m_signals->connection->client = m_client;
    EXPECT_TRUE(m_tv.context.signals.Attach(session, *m_signals->connection));
}

std::vector<std::string> TestClient::TakeSignals() {
    std::vector<std::string> signals;
    for (;;) {
        const Reply signal(m_signals->Take());
        const auto type = signal.Get<std::int32_t>(wire::kSignalType);
        if (!type)
            return signals;
        signals.push_back(
            std::to_string(*type) + " " +
            std::to_string(*signal.Get<std::int32_t>(wire::kSignalProfile)) + ":" +
            std::to_string(*signal.Get<std::uint16_t>(wire::kSignalScreen)) + " " +
            sim::ToHexText(*signal.Get<std::uint64_t>(wire::kSignalData)).get<std::string>());
    }
}

void TestClient::Die() {
    const std::size_t before = m_tv.context.clients.GetCount();
    m_tv.context.clients.Disconnected(*m_client);
    m_tv.WaitUntil([&] { return m_tv.context.clients.GetCount() < before; });
}

TestTv::TestTv(const Mount& mount, const std::string& databasePath)
    : context(database, log), parts(mount(Prepare(databasePath))) {
    context.Register<sim::SessionInterface>(context.dispatcher, context.sessions, context.log);
}

TestTv::TestTv()
    : TestTv(
          [this](sim::Context& registered) { return sim::RegisterPipelines(registered, lineUp); }) {
    lineUp.services = {
        {kAirService,
         {.antenna = 0,
          .frequency = 474000,
          .captions = true,
          .channelType = 2,
          .profile = 0,
          .major = 7}},
        {kOtherAirService,
         {.antenna = 0, .frequency = 482000, .channelType = -1, .profile = 2, .major = 8}},
        {kCableService, {.antenna = 1, .frequency = 330000, .channelType = 4, .major = 9}},
        {kStreamedService, {.antenna = 0, .streamed = true, .channelType = 9, .major = 10}}};
}

sim::Context& TestTv::Prepare(const std::string& databasePath) {
    EXPECT_TRUE(database.Open(databasePath));
    EXPECT_TRUE(context.numbers.Prepare());
    log.SetSink(
        [this](std::string_view tag, std::string_view line) { m_lines.emplace_back(tag, line); });
    log.SetTag("quarle-daemon", true);
    log.SetTag("quarle-provider", true);
    return context;
}

std::string TestTv::Set(const std::string& name, const std::vector<std::string>& words) {
    std::string error;
    context.log.SetSequence(context.journal.TakeSequence());
    const bool done = context.settings.Set(name, words, error);
    context.log.SetSequence(0);
    EXPECT_EQ(done, error.empty());
    return error;
}

bool TestTv::Logged(const std::string& tag, const std::string& text) {
    const auto lines = std::exchange(m_lines, {});
    for (const auto& [lineTag, line] : lines) {
        // Each line carries the number of its call or event.
        if (lineTag == tag && line.find(text) != std::string::npos)
            return line.find(": #0 ") == std::string::npos;
    }
    return false;
}

void TestTv::WaitUntil(const std::function<bool()>& condition) {
    bool late = false;
    sim::Timer limit;
    limit.Start(10000, [&] { late = true; });
    while (!condition() && !late)
        sim::EventLoop::Get().RunRound(sim::EventLoop::Wait::UntilReady);
    EXPECT_FALSE(late);
}
