#include "Dispatcher.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <exception>
#include <optional>

#include <unistd.h>

#include "Client.h"
#include "Results.h"

namespace sim {

namespace {

// Memory kept for the next reply.
constexpr std::size_t kKeptMemory = 4u << 20;
using interfaces::kNamePrefix;

// The reply of an operation that is not executed: only its result, the first argument.
void WriteResult(const Operation& method, std::int32_t result, ReplyWriter& out) {
    if (method.arguments.empty() || method.arguments[0].direction != wire::Direction::Out)
        return;
    if (method.arguments[0].type == &kInt)
        out.Int(0, result);
    else if (method.arguments[0].type == &kBool)
        out.Bool(0, result != 0);
}

// By their names; subscribing changes what the client hears, not the TV.
bool ChangesTv(const Interface& interface, const Operation& method) {
    if (interface.GetCalls() != Interface::Calls::ToSession)
        return false;
    const auto begins = [&](std::string_view prefix) { return method.name.starts_with(prefix); };
    return !begins("Get") && !begins("Is") && !begins("Check") && !begins("Find") && !begins("Subscribe") &&
           !begins("Unsubscribe");
}

// The common prefix of interface names may be omitted.
bool HasText(const Operation& method, const wire::Message& message, std::string_view text) {
    const ArgumentReader in(method.arguments, message.tree, message.header.treeSize);
    for (std::size_t place = 0; in.IsValid() && place < method.arguments.size(); ++place) {
        const Argument& argument = method.arguments[place];
        if (argument.type != &kText || argument.direction != wire::Direction::In)
            continue;
        std::string_view value = in.Text(place);
        if (value != text && value.starts_with(kNamePrefix))
            value.remove_prefix(kNamePrefix.size());
        if (value == text)
            return true;
    }
    return false;
}

} // namespace

void Dispatcher::Add(Interface& interface) {
    interface.CheckComplete();
    m_interfaces.push_back(&interface);
    m_byName.emplace(interface.GetName(), &interface);
}

Interface* Dispatcher::Find(std::string_view interfaceName) const {
    const auto found = m_byName.find(interfaceName);
    return found == m_byName.end() ? nullptr : found->second;
}

std::vector<Operation*> Dispatcher::FindOperations(std::string_view name) const {
    std::vector<Operation*> methods;
    if (name.starts_with(kNamePrefix))
        name.remove_prefix(kNamePrefix.size());
    for (const Interface* interface : m_interfaces) {
        std::string_view interfaceName = interface->GetName();
        if (interfaceName.starts_with(kNamePrefix))
            interfaceName.remove_prefix(kNamePrefix.size());
        for (const auto& method : interface->GetOperations()) {
            if (name == std::string(interfaceName) + "." + method->name)
                methods.push_back(method.get());
        }
    }
    return methods;
}

void Dispatcher::Handle(Connection& connection, const wire::Message& message) {
    const std::uint64_t sequence = m_journal.TakeSequence();
    m_log.SetSequence(sequence);
    m_reply.ClearAndTrim(kKeptMemory);
    Interface* interface = Find(message.interfaceName);
    Operation* method = interface == nullptr ? nullptr : interface->Find(message.header.methodId, message.method);
    std::optional<Injection> injection;
    std::string fault;
    if (method == nullptr) {
        fault = "unknown operation";
    } else {
        ++method->calls;
        injection = m_injections.Take(*method, [&](std::string_view text) { return HasText(*method, message, text); });
        if (!injection || injection->kind == Injection::Kind::Delay || injection->kind == Injection::Kind::Drop) {
            const auto begin = std::chrono::steady_clock::now();
            fault = Run(connection, message, *interface, *method, sequence);
            const std::chrono::duration<double, std::micro> taken = std::chrono::steady_clock::now() - begin;
            m_log.WriteDebug(Debug::Timing, "%s.%s took %.1f us", interface->GetName().c_str(), method->name.c_str(),
                             taken.count());
        } else if (injection->kind == Injection::Kind::Result) {
            ReplyWriter out(m_reply);
            WriteResult(*method, injection->number, out);
        } else if (injection->kind == Injection::Kind::Die) {
            kill(getpid(), SIGKILL);
        }
    }
    if (!fault.empty()) {
        m_reply.Clear();
        m_log.Write(kOwnTag, "%.*s.%.*s (%d): %s", static_cast<int>(message.interfaceName.size()),
                    message.interfaceName.data(), static_cast<int>(message.method.size()), message.method.data(),
                    message.header.methodId, fault.c_str());
    }

    m_journal.Add({sequence,
                   connection.client->GetNumber(),
                   message.header.session,
                   interface,
                   method,
                   message.interfaceName,
                   message.method,
                   message.header.methodId,
                   injection ? injection->GetName() : nullptr,
                   fault,
                   {message.tree, message.header.treeSize},
                   {m_reply.GetData(), m_reply.GetSize()}});

    wire::MessageHeader header;
    header.kind = wire::MessageKind::Reply;
    header.methodId = message.header.methodId;
    header.serial = message.header.serial;
    header.session = message.header.session;
    if (!injection || injection->kind == Injection::Kind::Result)
        connection.Send(header, m_reply);
    else if (injection->kind == Injection::Kind::Delay)
        connection.SendLate(static_cast<unsigned>(injection->number), header, m_reply);
    else if (injection->kind == Injection::Kind::Close)
        connection.End("injected: close");
    if (m_listener)
        m_listener(method);
    m_log.SetSequence(0);
}

std::string Dispatcher::Run(Connection& connection, const wire::Message& message, Interface& interface,
                            Operation& method, std::uint64_t sequence) {
    const ArgumentReader in(method.arguments, message.tree, message.header.treeSize);
    if (!in.IsValid())
        return in.DescribeFault();
    Call call{*connection.client, nullptr, sequence};
    if (interface.GetCalls() == Interface::Calls::ToSession) {
        call.session = m_sessions.Find(message.header.session);
        if (call.session == nullptr || call.session->client != connection.client ||
            call.session->interface != &interface)
            return "this client has no session " + std::to_string(message.header.session);
        Sessions::Use(*call.session);
    }
    ReplyWriter out(m_reply);
    if (m_log.IsOn(Debug::DryRun) && ChangesTv(interface, method)) {
        m_log.WriteDebug(Debug::DryRun, "%s.%s is not executed", interface.GetName().c_str(), method.name.c_str());
        WriteResult(method, kDone, out);
        return {};
    }
    try {
        method.handler(call, in, out);
    } catch (const std::exception& failure) {
        return failure.what();
    }
    if (m_reply.GetSize() > wire::kMaxTreeSize)
        return "the reply is too long";
    return {};
}

void Dispatcher::Reset() {
    m_injections.Clear();
    for (const Interface* interface : m_interfaces) {
        for (const auto& method : interface->GetOperations())
            method->calls = 0;
    }
}

} // namespace sim
