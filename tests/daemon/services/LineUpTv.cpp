#include "LineUpTv.h"

#include <cstring>

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

void WriteServices(wire::TreeWriter& tree, const std::vector<std::uint64_t>& services) {
    std::string packed;
    for (const std::uint64_t service : services) {
        const std::uint32_t code = 5;
        packed.append(reinterpret_cast<const char*>(&service), sizeof service);
        packed.append(reinterpret_cast<const char*>(&code), sizeof code);
    }
    tree.PutLeaf(0, wire::NodeKind::Array, packed.data(), packed.size());
}

void WriteCriteria(wire::TreeWriter& tree, const sim::Criteria& criteria) {
    tree.PutLeaf(0, wire::NodeKind::Array, criteria.conditions.data(),
                 criteria.conditions.size() * sizeof(sim::Condition));
    tree.PutLeaf(1, wire::NodeKind::Array, criteria.fetched.data(),
                 criteria.fetched.size() * sizeof(std::int32_t));
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

Reply LineUpClient::Ask(const std::string& interface, const std::string& method, std::int16_t id,
                        const CallTree& arguments) {
    std::uint32_t& session = m_sessions[interface];
    if (session == 0)
        session = Open(interface, interface == "IServiceNavigation" ? 1 : 0);
    return Call(session, method, id, arguments);
}

Reply LineUpClient::FindService(const sim::Criteria& criteria, std::int32_t count) {
    return Ask("IService", "FindService", 0,
               CallTree()
                   .Object([&](wire::TreeWriter& tree) { WriteCriteria(tree, criteria); })
                   .OutObject()
                   .In(count));
}

Reply LineUpClient::GetServiceList(const sim::Criteria& criteria, std::int32_t antenna,
                                   std::int32_t serviceMode, std::int32_t first,
                                   std::int32_t count) {
    return Ask("IServiceNavigation", "GetServiceList", 1,
               CallTree()
                   .Object([&](wire::TreeWriter& tree) { WriteCriteria(tree, criteria); })
                   .OutObject()
                   .TvMode(antenna, serviceMode)
                   .In(first)
                   .In(count));
}

Reply LineUpClient::GetCurrentProgram(std::uint64_t service) {
    return Ask("IServiceGuide", "GetCurrentProgram", 0, CallTree().In(service).OutObject());
}

std::int32_t LineUpClient::SetTvMode(std::int32_t antenna, std::int32_t serviceMode,
                                     std::uint64_t service) {
    return Ask("IServiceNavigation", "SetTvMode", 3,
               CallTree().TvMode(antenna, serviceMode).In(service).Text(""))
        .Status();
}

std::int32_t LineUpClient::SetService(std::uint64_t service) {
    return Ask("IServiceNavigation", "SetService", 5,
               CallTree().In(service).In(std::int32_t{0}).In(std::int32_t{0}).Text(""))
        .Status();
}

std::int32_t LineUpClient::SetSource(std::uint64_t service) {
    std::uint32_t& session = m_sessions["ISourceControl"];
    if (session == 0)
        session = Open("ISourceControl");
    return Call(session, "SetSource", 1, CallTree().In(std::int32_t{0}).In(service).Text(""))
        .Status();
}

std::int32_t LineUpClient::SetBootupService(std::uint64_t service, std::int32_t antenna,
                                            std::int32_t serviceMode) {
    return Ask("IServiceNavigation", "SetBootupService", 6,
               CallTree().In(service).TvMode(antenna, serviceMode).In(std::int32_t{0}))
        .Status();
}

std::int32_t LineUpClient::IsTuneAroundNeeded(const std::vector<std::uint64_t>& services) {
    return Ask("IScanControl", "IsTuneAroundNeeded", 0,
               CallTree().Object([&](wire::TreeWriter& tree) { WriteServices(tree, services); }))
        .Status();
}

std::int32_t LineUpClient::StartTuneAround(const std::vector<std::uint64_t>& services) {
    return Ask("IScanControl", "StartTuneAround", 1,
               CallTree()
                   .Object([&](wire::TreeWriter& tree) { WriteServices(tree, services); })
                   .Text("DebugMenu"))
        .Status();
}

std::int32_t LineUpClient::StopManualScan() {
    return Ask("IScanControl", "StopManualScan", 2).Status();
}

std::int32_t LineUpClient::IsBarkerChannelScanAvailable(std::int32_t antenna) {
    return Ask("IScanControl", "IsBarkerChannelScanAvailable", 3, CallTree().TvMode(antenna, -1))
        .Status();
}

std::int32_t LineUpClient::StartBarkerChannelScan(std::int32_t antenna) {
    return Ask("IScanControl", "StartBarkerChannelScan", 4, CallTree().Text("").TvMode(antenna, -1))
        .Status();
}

std::int32_t LineUpClient::StopBarkerChannelScan() {
    return Ask("IScanControl", "StopBarkerChannelScan", 5).Status();
}

void LineUpClient::Subscribe(const std::vector<std::int32_t>& types) {
    std::uint32_t& session = m_sessions["ISignalSubscriber"];
    if (session == 0) {
        session = Open("ISignalSubscriber", 0);
        ListenTo(session);
    }
    const std::int32_t none = 0;
    for (const std::int32_t type : types)
        Call(session, "Subscribe", 0,
             CallTree().In(type).In(none).In(std::int32_t{702}).In(none).In(none));
}
