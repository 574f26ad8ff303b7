#include <memory>

#include <base/Program.h>
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Context.h"
#include "Json.h"

namespace sim {

using nlohmann::json;

namespace {

// A value in a line with others: long ones are truncated.
std::string ToShortText(const json& argument) {
    constexpr std::size_t kMaxShown = 60;
    if (argument.contains("length"))
        return "...";
    std::string text = argument.value("value", json()).dump(-1, ' ', true, json::error_handler_t::replace);
    if (text.size() > kMaxShown)
        text.replace(kMaxShown, std::string::npos, "...");
    return text;
}

std::string ToName(const json& argument) {
    return argument.contains("name") ? argument.at("name").get<std::string>()
                                     : std::to_string(argument.value("place", 0));
}

// #12 client 1 IDebugPrintControl.Execute(command="items") = status 1, screen "..."
std::string ToReadableLine(const json& call) {
    const auto interface = call.at("interface").get<std::string>();
    std::string line = "#" + std::to_string(call.at("sequence").get<std::uint64_t>()) + " client " +
                       std::to_string(call.at("client").get<std::uint32_t>());
    if (const auto session = call.at("session").get<std::uint32_t>(); session != 0)
        line += " session " + std::to_string(session);
    // A client may send any name.
    line +=
        " " + EscapeControls(interface.substr(interface.rfind('.') + 1) + "." + call.at("method").get<std::string>());
    line += "(";
    const char* between = "";
    for (const json& argument : call.at("arguments")) {
        if (argument.at("direction") != "in")
            continue;
        line += between + ToName(argument) + "=" + ToShortText(argument);
        between = ", ";
    }
    line += ")";
    between = " = ";
    for (const json& result : call.at("results")) {
        line += between + ToName(result) + " " + ToShortText(result);
        between = ", ";
    }
    if (call.contains("injected"))
        line += " [injected: " + call.at("injected").get<std::string>() + "]";
    if (call.contains("fault"))
        line += " [" + call.at("fault").get<std::string>() + "]";
    return line;
}

// Prints as fast as the client reads; calls that the journal has dropped in the meantime are counted instead.
class Calls {
public:
    explicit Calls(const Journal& journal) : m_journal(journal), m_next(journal.GetBegin()) {}

    void Take(CommandLine& line) {
        line.Flag("--follow", m_follow, "Continue with new calls");
        line.Flag("--json", m_asJson, "One JSON object per line, with all arguments in full");
    }
    bool IsFollowing() const { return m_follow; }

    std::optional<int> PrintSome(ControlConnection& connection) {
        if (m_next < m_journal.GetBegin()) {
            connection.Complain(std::to_string(m_journal.GetBegin() - m_next) + " calls were dropped from the journal");
            m_next = m_journal.GetBegin();
        }
        std::string lines;
        for (int count = 0; count < kCallsATime && m_next < m_journal.GetEnd(); ++count) {
            const json call = m_journal.Describe(m_next++);
            lines += (m_asJson ? ToText(call) : ToReadableLine(call)) + "\n";
        }
        if (!lines.empty())
            connection.Print(lines);
        if (m_follow || m_next < m_journal.GetEnd())
            return {};
        return 0;
    }

private:
    static constexpr int kCallsATime = 64;

    const Journal& m_journal;
    bool m_follow = false;
    bool m_asJson = false;
    std::uint64_t m_next;
};

} // namespace

void AddCallsCommand(Context& context) {
    context.commands.Add("calls", "Show the journal, one line per call", [&](CommandLine& line) {
        auto calls = std::make_shared<Calls>(context.journal);
        calls->Take(line);
        return [&context, calls](ControlConnection& connection) {
            if (calls->IsFollowing()) {
                connection.SetEndless();
                // Notified from the loop, so that no call waits for a follower.
                const std::uint64_t id = context.changes.AddListener([&connection] { connection.Wake(); });
                connection.Keep(
                    std::shared_ptr<void>(nullptr, [&context, id](void*) { context.changes.RemoveListener(id); }));
            }
            connection.SetSource([calls, &connection] { return calls->PrintSome(connection); });
        };
    });
}

} // namespace sim
