#pragma once

#include <functional>
#include <optional>
#include <string>

#include "Component.h"
#include "Context.h"
#include "LineUp.h"
#include "LineUpTables.h"
#include "Programmes.h"
#include "ServiceQueries.h"

namespace sim {

// A line-up as a text, and its origin for error lines and the state.
struct LineUpSource {
    std::string name;
    std::string text;
};

// The TV's line-up: its services, its programmes, its boot-up service.
class ServiceLineUp : public LineUp, public ChannelList, public Component {
public:
    ServiceLineUp(Context& context, Programmes& programmes);

    // Once. Uses the given line-up, else the one in the database, else the built-in one. False:
    // `error` is one line.
    bool Start(const LineUpSource* given, std::string& error);
    // Called when the line-up has been replaced.
    void SetListener(std::function<void()> listener) { m_listener = std::move(listener); }
    // Replaces the line-up. False, without a change: `error` is one line, and names the text's
    // line.
    bool Load(const LineUpSource& source, std::string& error);
    // How many times the line-up has been replaced.
    std::uint64_t GetLoads() const { return m_loads; }

    LineUpTables& GetTables() { return m_tables; }
    ServiceQueries& GetQueries() { return m_queries; }

    std::optional<ServiceFacts> FindFacts(std::uint64_t service) override { return m_tables.FindFacts(service); }
    ChannelList* GetChannelList() override { return this; }
    void List(const values::Criteria& criteria, const TvMode& tvMode, std::int32_t first, std::int32_t count,
              ReplyWriter& out) override;
    std::int32_t SetBootupService(std::uint64_t service, const TvMode& tvMode, std::int32_t option) override;

    // The boot-up service, if the line-up has it.
    struct Bootup {
        std::uint64_t service = 0;
        TvMode tvMode;
        std::int32_t option = 0;
    };
    const std::optional<Bootup>& GetBootup() const { return m_bootup; }

    const char* GetStateName() const override { return "lineUp"; }
    nlohmann::json DescribeState() const override;
    // Restores the line-up of a new TV, without collected programmes and boot-up service.
    bool Reset() override;

private:
    void Loaded(const std::string& name);
    bool IsBuiltIn() const { return m_new.name == kBuiltIn; }

    static constexpr const char* kBuiltIn = "built-in";

    Context& m_context;
    Programmes& m_programmes;
    LineUpTables m_tables;
    ServiceQueries m_queries;
    std::function<void()> m_listener;
    LineUpSource m_new;  // of a new TV
    bool m_isNew = true; // it is still in use
    std::string m_name;
    LineUpCounts m_counts;
    std::uint64_t m_loads = 0;
    std::optional<Bootup> m_bootup;
};

} // namespace sim
