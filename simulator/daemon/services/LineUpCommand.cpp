#include <memory>

#include <nlohmann/json.hpp>

#include "ControlConnection.h"
#include "LineUpFile.h"
#include "ServiceComponents.h"

namespace sim {

using nlohmann::json;

namespace {

// The file is named by a path of its own, since the asker's directory is another; errors name it
// as the asker did.
void Load(Context& context, ServiceLineUp& lineUp, const json& request, ControlConnection& asker) {
    LineUpSource source{request.at("name").get<std::string>(), {}};
    std::string error;
    context.log.SetSequence(context.journal.TakeSequence());
    const bool loaded =
        ReadLineUpFile(request.at("path").get<std::string>(), source.name, source.text, error) &&
        lineUp.Load(source, error);
    context.changes.Tell();
    context.log.SetSequence(0);
    if (loaded)
        asker.Answer(json::object());
    else
        asker.Fail(error);
}

// The text in pieces, as fast as the asker takes them.
class Pieces {
public:
    Pieces(Database& database, ServiceLineUp& lineUp)
        : m_database(database), m_lineUp(lineUp), m_loads(lineUp.GetLoads()) {}

    bool Add(std::string& lines) {
        if (m_lineUp.GetLoads() != m_loads) {
            lines += ToLine({{"error", "there is another line-up by now"}});
            return false;
        }
        const bool more = m_lineUp.GetTables().WriteNext(m_place, m_writer);
        if (more)
            lines += ToLine({{"text", m_writer.Take()}});
        else if (m_place.hasFailed)
            lines += ToLine({{"error", m_database.GetError()}});
        return more;
    }

private:
    Database& m_database;
    ServiceLineUp& m_lineUp;
    std::uint64_t m_loads;
    LineUpTables::Place m_place;
    LineUpWriter m_writer;
};

} // namespace

void AddLineUpCommand(Context& context, ServiceLineUp& lineUp) {
    context.commands.Add("lineup", [&](const json& request, ControlConnection& asker) {
        const auto action = request.at("action").get<std::string>();
        if (action == "load")
            return Load(context, lineUp, request, asker);
        if (action != "show")
            return asker.Fail("expected the action load or show");
        asker.SetSource([pieces = std::make_shared<Pieces>(context.database, lineUp)](
                            std::string& lines) { return pieces->Add(lines); });
    });
}

} // namespace sim
