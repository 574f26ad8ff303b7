#include <memory>

#include <base/NewFile.h>

#include "Event.h"
#include "LineUpFile.h"
#include "ServiceComponents.h"

namespace sim {

namespace {

// A million services take seconds.
constexpr double kLoadSeconds = 300;

void Load(Context& context, ServiceLineUp& lineUp, const std::string& file,
          ControlConnection& asker) {
    asker.SetLimit(kLoadSeconds);
    const Event event(context);
    LineUpSource source{file, {}};
    std::string error;
    if (ReadLineUpFile(asker.GetPath(file), source.name, source.text, error) &&
        lineUp.Load(source, error))
        asker.Finish();
    else
        asker.Fail(error);
}

// The line-up as a text, a few hundred services at a time.
class Pieces {
public:
    Pieces(Database& database, ServiceLineUp& lineUp)
        : m_database(database), m_lineUp(lineUp), m_loads(lineUp.GetLoads()) {}

    // Empty after the last piece, or on failure, with the reason in `error`.
    std::string Next(std::string& error) {
        if (m_lineUp.GetLoads() != m_loads)
            error = "another line-up was loaded in the meantime";
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
std::optional<int> End(const std::string& error, ControlConnection& asker) {
    if (error.empty())
        return 0;
    asker.Complain(error);
    return 1;
}

void Show(Context& context, ServiceLineUp& lineUp, ControlConnection& asker) {
    asker.SetSource([pieces = std::make_shared<Pieces>(context.database, lineUp),
                     &asker]() -> std::optional<int> {
        std::string error;
        const std::string text = pieces->Next(error);
        if (text.empty())
            return End(error, asker);
        asker.Print(text);
        return {};
    });
}

// The file replaces an existing one once it is complete.
void Save(Context& context, ServiceLineUp& lineUp, const std::string& name,
          ControlConnection& asker) {
    auto file = std::make_shared<NewFile>();
    if (std::string error; !file->Open(asker.GetPath(name), error))
        return asker.Fail(name + ": " + error);
    asker.SetLimit(kLoadSeconds);
    asker.SetSource([pieces = std::make_shared<Pieces>(context.database, lineUp), file, name,
                     &asker]() -> std::optional<int> {
        std::string error;
        const std::string text = pieces->Next(error);
        if (!error.empty())
            return End(error, asker);
        if (text.empty() ? !file->Commit(error) : !file->Write(text, error))
            return End(name + ": " + error, asker);
        if (text.empty())
            return 0;
        asker.Wake();
        return {};
    });
}

} // namespace

void AddLineUpCommands(Context& context, ServiceLineUp& lineUp) {
    const auto add = [&](const char* name, const char* help, auto* act) {
        context.commands.Add(name, help, [&context, &lineUp, act](CommandLine& line) {
            auto file = std::make_shared<std::string>();
            line.Text("file", *file, "FILE", "The line-up's file");
            return [&context, &lineUp, act, file](ControlConnection& asker) {
                act(context, lineUp, *file, asker);
            };
        });
    };
    add("lineup load", "Replace the TV's services with a file's", Load);
    add("lineup save", "Write the TV's services to a file", Save);
    context.commands.Add("lineup show", "Print the TV's services", [&](CommandLine&) {
        return [&](ControlConnection& asker) { Show(context, lineUp, asker); };
    });
}

} // namespace sim
