#include "TestTv.h"

#include <array>
#include <cstring>

#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>
#include <wire/Packet.h>

#include "SessionInterface.h"

namespace {

using namespace interfaces;

sim::Token MakeToken() {
    static unsigned char clients = 0;
    return {++clients};
}

} // namespace

// A connection of the daemon, and the client's end of it.
struct TestClient::Link : sim::Connection::Owner {
    Link() {
        std::array<int, 2> ends{};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK, 0, ends.data()), 0);
        clientEnd = ends[1];
        Owner& owner = *this;
        connection = std::make_unique<sim::Connection>(ends[0], 1, owner);
    }
    ~Link() override { close(clientEnd); }

    void MessageArrived(sim::Connection&, const wire::Message&) override {}
    void ConnectionEnded(sim::Connection&, const std::string& why) override { endReason = why; }

    // The next message that has come; empty: none.
    std::string Take() {
        wire::PacketAssembler assembler;
        std::array<unsigned char, wire::kPacketHeaderSize + wire::kMaxPacketPayload> packet{};
        for (;;) {
            const ssize_t size = recv(clientEnd, packet.data(), packet.size(), 0);
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
    int clientEnd;
    std::string endReason;
};

std::optional<wire::Node> Reply::Find(std::int16_t place) const {
    wire::Message message;
    if (!wire::ParseMessage(m_message.data(), m_message.size(), message))
        return {};
    wire::NodeCursor cursor(message.tree, message.header.treeSize);
    wire::Node node;
    while (cursor.Next(node))
        if (node.tag == place)
            return node;
    return {};
}

Ids Reply::GetIds(std::int16_t place) const {
    const auto branch = Find(place);
    EXPECT_TRUE(branch && branch->IsBranch());
    wire::Node array;
    Ids ids;
    if (branch && wire::NodeCursor(*branch).Next(array)) {
        ids.resize(array.size / sizeof(std::int32_t));
        if (!ids.empty())
            std::memcpy(ids.data(), array.data, array.size);
    }
    return ids;
}

TestClient::TestClient(TestTv& tv, const sim::Handle& pipeline) : m_tv(tv), m_pipeline(pipeline), m_token(MakeToken()) {
    Reconnect();
}

TestClient::~TestClient() {
    if (m_signals != nullptr)
        m_tv.context.signals.Detach(*m_signals->connection);
}

Reply TestClient::Exchange(std::string_view interface, std::uint32_t session, std::string_view method, std::int16_t id,
                           const CallTree& arguments) {
    wire::Message message;
    message.header.session = session;
    message.header.methodId = id;
    message.header.treeSize = static_cast<std::uint32_t>(arguments.GetBytes().GetSize());
    message.interfaceName = interface;
    message.method = method;
    message.tree = arguments.GetBytes().GetData();
    m_tv.context.dispatcher.Handle(*m_calls->connection, message);
    m_tv.CheckMarks();
    return TakeReply();
}

Reply TestClient::TakeReply() {
    return Reply(m_calls->Take());
}

std::string TestClient::GetEndReason() const {
    return m_calls->endReason;
}

std::uint32_t TestClient::OpenAt(const std::string& interface, const sim::Handle& pipeline) {
    const auto open = NorvexSessionMethod::Open;
    const Reply reply =
        Exchange(kTable<NorvexSessionMethod>.name, 0, GetMethodName(open), static_cast<std::int16_t>(open),
                 CallTree(Out<std::uint32_t>{0}, interface, pipeline.profile, std::int32_t{pipeline.screen}));
    return reply.Status() == 0 ? reply.Get<std::uint32_t>(1).value_or(0) : 0;
}

std::int32_t TestClient::Close(std::uint32_t session) {
    const auto close = NorvexSessionMethod::Close;
    return Exchange(kTable<NorvexSessionMethod>.name, 0, GetMethodName(close), static_cast<std::int16_t>(close),
                    CallTree(session))
        .Status();
}

std::int32_t TestClient::SetSource(std::int32_t source) {
    return Do(SourceControlMethod::SetSource, source, "");
}

std::int32_t TestClient::SetSource(std::int32_t source, std::uint64_t service) {
    return Do(SourceControlMethod::SetSource_Service, source, service, "");
}

std::int32_t TestClient::SetService(std::uint64_t service) {
    return Do(ServiceNavigationMethod::SetService, service, 0, 0, "");
}

std::int32_t TestClient::SetTvMode(const sim::TvMode& mode) {
    return Do(ServiceNavigationMethod::SetTvMode, mode, "");
}

std::int32_t TestClient::SetTvMode(const sim::TvMode& mode, std::uint64_t service) {
    return Do(ServiceNavigationMethod::SetTvMode_Service, mode, service, "");
}

void TestClient::ListenToSignals() {
    std::uint32_t& session = m_sessions[GetName<SignalSubscriberMethod>()];
    if (session == 0)
        session = Open<SignalSubscriberMethod>();
    if (m_signals != nullptr)
        m_tv.context.signals.Detach(*m_signals->connection);
    m_signals = std::make_unique<Link>();
    m_signals->connection->client = m_client;
    EXPECT_TRUE(m_tv.context.signals.Attach(session, *m_signals->connection));
    // As the server does.
    m_tv.context.changes.Mark("/subscribers");
}

std::int32_t TestClient::Subscribe(std::int32_t type) {
    if (m_signals == nullptr)
        ListenToSignals();
    return Do(SignalSubscriberMethod::Subscribe, type, 0, 702, 0, 0);
}

std::int32_t TestClient::Unsubscribe(std::int32_t type) {
    return Do(SignalSubscriberMethod::Unsubscribe, type, 702, 0, 0);
}

Signals TestClient::TakeSignals() {
    Signals signals;
    if (m_signals == nullptr)
        return signals;
    for (;;) {
        const Reply signal(m_signals->Take());
        const auto type = signal.Get<std::int32_t>(wire::kSignalType);
        if (!type)
            return signals;
        signals.push_back(std::to_string(*type) + " " +
                          std::to_string(*signal.Get<std::int32_t>(wire::kSignalProfile)) + ":" +
                          std::to_string(*signal.Get<std::uint16_t>(wire::kSignalScreen)) + " " +
                          sim::ToHexText(*signal.Get<std::uint64_t>(wire::kSignalData)).get<std::string>());
    }
}

void TestClient::Disconnect() {
    if (m_signals != nullptr)
        m_tv.context.signals.Detach(*m_signals->connection);
    m_tv.context.changes.Mark("/subscribers");
    m_signals.reset();
    m_calls.reset();
    m_tv.context.clients.Disconnected(*m_client);
}

void TestClient::Reconnect() {
    m_calls = std::make_unique<Link>();
    m_client = &m_tv.context.clients.Connected(m_token);
    m_calls->connection->client = m_client;
}

void TestClient::Die() {
    const std::size_t before = m_tv.context.clients.GetCount();
    Disconnect();
    m_tv.WaitUntil([&] { return m_tv.context.clients.GetCount() < before; });
}

TestTv::TestTv(const RegisterComponents& registerComponents, const std::string& databasePath)
    : context(database, log, 1), components(registerComponents(Prepare(databasePath))) {
    context.Register<sim::SessionInterface>(context.dispatcher, context.sessions, context.log);
}

TestTv::TestTv() : TestTv([this](sim::Context& registered) { return sim::RegisterPipelines(registered, lineUp); }) {
    lineUp.services = {
        {kAirService,
         {.antenna = 0, .frequency = 474000, .captions = true, .channelType = 2, .profile = 0, .major = 7}},
        {kOtherAirService, {.antenna = 0, .frequency = 482000, .channelType = -1, .profile = 2, .major = 8}},
        {kCableService, {.antenna = 1, .frequency = 330000, .channelType = 4, .major = 9}},
        {kStreamedService, {.antenna = 0, .streamed = true, .channelType = 9, .major = 10}}};
}

sim::Context& TestTv::Prepare(const std::string& databasePath) {
    EXPECT_TRUE(database.Open(databasePath));
    EXPECT_TRUE(context.numbers.Prepare());
    log.SetSink([this](std::string_view tag, std::string_view line) { m_lines.emplace_back(tag, line); });
    log.SetTag("quarle-daemon", true);
    log.SetTag("quarle-provider", true);
    return context;
}

std::string TestTv::Set(const std::string& name, const std::vector<std::string>& arguments) {
    std::string error;
    context.log.SetSequence(context.journal.TakeSequence());
    const bool done = context.Set(name, arguments, error);
    context.log.SetSequence(0);
    EXPECT_EQ(done, error.empty());
    return error;
}

void TestTv::CheckMarks() {
    constexpr int kChecks = 50;
    if (++m_checks > kChecks)
        return;
    if (m_known.is_null())
        m_known = nlohmann::json::object();
    context.changes.TellAll();
    nlohmann::json state = context.DescribeState();
    // Of every call.
    state.erase("daemon");
    state.erase("clock");
    const auto watch = [this](const std::string& path) {
        context.changes.Watch(path, [this, path] { m_marked.insert(path); });
    };
    for (const auto& [part, values] : state.items()) {
        const std::string path = "/" + part;
        if (!m_known.contains(part)) {
            watch(path);
        } else if (m_known[part] != values) {
            EXPECT_TRUE(m_marked.contains(path)) << path;
            for (const auto& [name, value] : m_known[part].items()) {
                if (values.is_object() && values.value(name, nlohmann::json()) != value) {
                    EXPECT_TRUE(m_marked.contains(path + "/" + name)) << path << "/" << name;
                }
            }
        }
        for (const auto& [name, value] : values.items()) {
            if (values.is_object() && !m_known.value(part, nlohmann::json::object()).contains(name))
                watch(path + "/" + name);
        }
    }
    m_known = std::move(state);
    m_marked.clear();
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
