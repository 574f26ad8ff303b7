#include <memory>

#include <nlohmann/json.hpp>

#include "CallLine.h"
#include "Commands.h"
#include "Context.h"
#include "Json.h"

namespace sim {

using nlohmann::json;

namespace {

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
            lines += (m_asJson ? ToText(call) : ToLine(call)) + "\n";
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
