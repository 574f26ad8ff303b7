#include <map>
#include <memory>

#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Context.h"
#include "ControlConnection.h"

namespace sim {

using nlohmann::json;

namespace {

// Lines are made as the asker takes them; calls that the journal has dropped in the meantime are
// counted instead.
class CallLines {
public:
    CallLines(const Journal& journal, bool follow)
        : m_journal(journal), m_follow(follow), m_next(journal.GetBegin()) {}

    bool Add(std::string& lines) {
        if (m_next < m_journal.GetBegin()) {
            lines += ToLine({{"lost", m_journal.GetBegin() - m_next}});
            m_next = m_journal.GetBegin();
        }
        for (int count = 0; count < kCallsATime && m_next < m_journal.GetEnd(); ++count)
            lines += ToLine({{"call", m_journal.Describe(m_next++)}});
        return m_follow || m_next < m_journal.GetEnd();
    }

private:
    static constexpr int kCallsATime = 64;

    const Journal& m_journal;
    bool m_follow;
    std::uint64_t m_next;
};

} // namespace

void AddCallsCommand(Context& context) {
    // Whoever follows the journal; told from the loop, so that no call waits for it.
    context.commands.Add("calls", [&context](const json& request, ControlConnection& asker) {
        const bool follow = request.value("follow", false);
        auto lines = std::make_shared<CallLines>(context.journal, follow);
        if (follow) {
            const std::uint64_t id = context.changes.AddListener([&asker] { asker.Wake(); });
            asker.Keep(std::shared_ptr<void>(
                nullptr, [&context, id](void*) { context.changes.RemoveListener(id); }));
        }
        asker.SetSource([lines](std::string& out) { return lines->Add(out); });
    });
}

} // namespace sim
