// The line-up's text. One that was understood is written down and read as the same one; one that
// was refused leaves the line-up that is there as it was.

#include <utility>
#include <vector>

#include "Database.h"
#include "LineUpTables.h"
#include "LineUpText.h"
#include "Require.h"

namespace {

// What a text holds, in its order.
class Collected : public sim::LineUpSink {
public:
    std::string AddService(const sim::ServiceRecord& service) override {
        services.push_back(service);
        return {};
    }
    std::string AddProgramme(std::uint64_t service, const sim::ProgrammeRecord& programme) override {
        REQUIRE(!services.empty() && services.back().id == service);
        programmes.emplace_back(services.size(), programme);
        return {};
    }
    bool operator==(const Collected& other) const {
        return services == other.services && programmes == other.programmes;
    }

    std::vector<sim::ServiceRecord> services;
    std::vector<std::pair<std::size_t, sim::ProgrammeRecord>> programmes;
};

std::string Write(const Collected& collected) {
    sim::LineUpWriter writer;
    auto programme = collected.programmes.begin();
    for (std::size_t place = 1; place <= collected.services.size(); ++place) {
        writer.Add(collected.services[place - 1]);
        for (; programme != collected.programmes.end() && programme->first == place; ++programme)
            writer.Add(programme->second);
    }
    return writer.Take();
}

std::string Show(sim::LineUpTables& tables) {
    sim::LineUpTables::Place place;
    sim::LineUpWriter writer;
    while (tables.WriteNext(place, writer)) {
    }
    return writer.Take();
}

struct Tables {
    Tables() : tables(database) { REQUIRE(database.Open("") && tables.Prepare()); }
    sim::Database database;
    sim::LineUpTables tables;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    Collected collected;
    std::string error;
    const bool isRead = sim::ReadLineUp(text, "text", collected, error);
    REQUIRE(isRead == error.empty());
    REQUIRE(isRead || error.starts_with("text:"));
    if (isRead) {
        Collected again;
        REQUIRE(sim::ReadLineUp(Write(collected), "again", again, error) && again == collected);
    }

    static Tables there;
    const std::string before = Show(there.tables);
    if (there.tables.Replace(text, "text", error)) {
        REQUIRE(isRead);
        // What is shown is all of it, can be loaded, and shows itself again.
        const std::string after = Show(there.tables);
        Collected shown;
        REQUIRE(sim::ReadLineUp(after, "shown", shown, error));
        REQUIRE(shown.services.size() == collected.services.size() &&
                shown.programmes.size() == collected.programmes.size());
        REQUIRE(there.tables.Replace(after, "shown", error) && Show(there.tables) == after);
    } else {
        REQUIRE(Show(there.tables) == before);
    }
    return 0;
}
