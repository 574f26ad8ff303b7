#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ServiceTypes.h"
#include "ServiceComponents.h"
#include "TestTv.h"

// What a TV is made with, and what has been registered; there before the TV.
struct LineUpTvComponents {
    std::optional<sim::ServiceComponents> services;
};

// A TV with a line-up, called as a client calls it.
class LineUpTv : public LineUpTvComponents, public TestTv {
public:
    // Without a text: the built-in one, or the database's.
    explicit LineUpTv(const char* text = nullptr, const std::string& databasePath = {});

    sim::ServiceLineUp& GetLineUp() { return services->lineUp; }
    // The refusal's text; empty when it was loaded.
    std::string Load(const std::string& text);
    std::string Show();
};

// Fields by number, in the order in which they came; nothing for one without a value.
using Record = std::vector<std::pair<int, std::optional<std::uint64_t>>>;

Record ToRecord(const wire::Node& branch);
std::vector<Record> ToRecords(const wire::Node& branch);

// The calls of a client, on sessions of its own.
class LineUpClient : public TestClient {
public:
    explicit LineUpClient(LineUpTv& tv) : TestClient(tv) {}

    Reply FindService(const sim::Criteria& criteria, std::int32_t count = 1);
    Reply GetServiceList(const sim::Criteria& criteria, std::int32_t antenna = -1,
                         std::int32_t serviceMode = -1, std::int32_t first = 0,
                         std::int32_t count = 0);
    Reply GetCurrentProgram(std::uint64_t service);
    std::int32_t SetTvMode(std::int32_t antenna, std::int32_t serviceMode, std::uint64_t service);
    std::int32_t SetService(std::uint64_t service);
    std::int32_t SetSource(std::uint64_t service);
    std::int32_t SetBootupService(std::uint64_t service, std::int32_t antenna = -1,
                                  std::int32_t serviceMode = -1);
    std::int32_t IsTuneAroundNeeded(const std::vector<std::uint64_t>& services);
    std::int32_t StartTuneAround(const std::vector<std::uint64_t>& services);
    std::int32_t StopManualScan();
    std::int32_t IsBarkerChannelScanAvailable(std::int32_t antenna);
    std::int32_t StartBarkerChannelScan(std::int32_t antenna);
    std::int32_t StopBarkerChannelScan();
    // From now on these types' signals come.
    void Subscribe(const std::vector<std::int32_t>& types);

private:
    Reply Ask(const std::string& interface, const std::string& method, std::int16_t id,
              const CallTree& arguments = {});

    std::map<std::string, std::uint32_t> m_sessions; // by interface
};

constexpr std::uint64_t kInvalidService = ~std::uint64_t{0};
constexpr std::uint64_t kNorvexOne = 0xfa0000000002002dULL;
