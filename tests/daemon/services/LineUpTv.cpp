#include "LineUpTv.h"

#include <gtest/gtest.h>

namespace {

sim::PipelineComponents RegisterLineUp(sim::Context& context, const char* text,
                                       std::optional<sim::ServiceComponents>& services) {
    const sim::LineUpSource source{"test", text == nullptr ? "" : text};
    std::string error;
    services.emplace(*sim::RegisterServices(context, text == nullptr ? nullptr : &source, error));
    EXPECT_EQ(error, "");
    return services->pipelines;
}

} // namespace

LineUpTv::LineUpTv(const char* text, const std::string& databasePath)
    : TestTv([this, text](sim::Context& registered) { return RegisterLineUp(registered, text, services); },
             databasePath) {}

std::string LineUpTv::Load(const std::string& text) {
    std::string error;
    const bool loaded = GetLineUp().Load({"loaded", text}, error);
    EXPECT_EQ(loaded, error.empty());
    return error;
}

std::string LineUpTv::Show() {
    sim::LineUpTables::Place place;
    sim::LineUpWriter writer;
    while (GetLineUp().GetTables().WriteNext(place, writer)) {
    }
    return writer.Take();
}

Record ToRecord(const wire::Node& branch) {
    Record record;
    wire::NodeCursor cursor(branch);
    wire::Node node;
    while (cursor.Next(node)) {
        std::int32_t number = 0;
        std::uint64_t id = 0;
        auto& value = record.emplace_back(node.tag, std::nullopt).second;
        if (node.Get(number))
            value = static_cast<std::uint64_t>(number);
        else if (node.Get(id))
            value = id;
        else
            EXPECT_EQ(node.size, 0u);
    }
    return record;
}

std::vector<Record> ToRecords(const wire::Node& branch) {
    std::vector<Record> records;
    wire::NodeCursor cursor(branch);
    wire::Node node;
    while (cursor.Next(node))
        records.push_back(ToRecord(node));
    return records;
}
