#include <memory>

#include <base/NewFile.h>

#include "Event.h"
#include "LineUpFile.h"
#include "ServiceComponents.h"

namespace sim {

namespace {

// A million services take seconds.
constexpr double kLoadSeconds = 300;

void Load(Context& context, ServiceLineUp& lineUp, const std::string& file, ControlConnection& connection) {
    connection.SetLimit(kLoadSeconds);
    const Event event(context);
    LineUpSource source{file, {}};
    std::string error;
    if (ReadLineUpFile(connection.GetPath(file), source.name, source.text, error) && lineUp.Load(source, error))
        connection.Finish();
    else
        connection.Fail(error);
}

// The line-up as a text, a few hundred services at a time.
class Pieces {
public:
    Pieces(Database& database, ServiceLineUp& lineUp)
        : m_database(database), m_lineUp(lineUp), m_loads(lineUp.GetLoads()) {}

    // Empty after the last piece, or on failure, with the reason in `error`.
    std::string Next(std::string& error) {
        if (m_lineUp.GetLoads() != m_loads)
            error = "another line-up has been loaded meanwhile";
        else if (m_lineUp.GetTables().WriteNext(m_place, m_writer))
            return m_writer.Take();
        else if (m_place.hasFailed)
            error = m_database.GetError();
        return {};
    }

private:
    Database& m_database;
    ServiceLineUp& m_lineUp;
    std::uint64_t m_loads;
    LineUpTables::Place m_place;
    LineUpWriter m_writer;
};

// The status; nothing while there is more.
std::optional<int> End(const std::string& error, ControlConnection& connection) {
    if (error.empty())
        return 0;
    connection.Complain(error);
    return 1;
}

void Show(Context& context, ServiceLineUp& lineUp, ControlConnection& connection) {
    connection.SetSource(
        [pieces = std::make_shared<Pieces>(context.database, lineUp), &connection]() -> std::optional<int> {
            std::string error;
            const std::string text = pieces->Next(error);
            if (text.empty())
                return End(error, connection);
            connection.Print(text);
            return {};
        });
}

// The file replaces an existing one once it is complete. When the answer is sent, it is gone or in its place.
void Save(Context& context, ServiceLineUp& lineUp, const std::string& name, ControlConnection& connection) {
    auto file = std::make_shared<NewFile>();
    if (std::string error; !file->Open(connection.GetPath(name), error))
        return connection.Fail(name + ": " + error);
    connection.SetLimit(kLoadSeconds);
    connection.SetSource([pieces = std::make_shared<Pieces>(context.database, lineUp), file = std::move(file), name,
                          &connection]() -> std::optional<int> {
        std::string error;
        const std::string text = pieces->Next(error);
        if (!error.empty())
            return End(error, connection);
        if (text.empty() ? !file->Commit(error) : !file->Write(text, error))
            return End(name + ": " + error, connection);
        if (text.empty())
            return 0;
        connection.Wake();
        return {};
    });
}

} // namespace

void AddLineUpCommands(Context& context, ServiceLineUp& lineUp) {
    const auto add = [&](const char* name, const char* help, auto* act) {
        context.commands.Add(name, help, [&context, &lineUp, act](CommandLine& line) {
            auto file = std::make_shared<std::string>();
            line.Text("file", *file, "FILE", "The line-up's file");
            return [&context, &lineUp, act, file](ControlConnection& connection) {
                act(context, lineUp, *file, connection);
            };
        });
    };
    add("lineup load", "Replace the TV's services with a file's", Load);
    add("lineup save", "Write the TV's services to a file", Save);
    context.commands.Add("lineup show", "Print the TV's services", [&](CommandLine&) {
        return [&](ControlConnection& connection) { Show(context, lineUp, connection); };
    });
}

} // namespace sim
