#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ServiceComponents.h"
#include "ServiceQueries.h"
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
    // The text of the refusal; empty on success.
    std::string Load(const std::string& text);
    std::string Show();
};

// Fields by number, in the order in which they came; nothing for one without a value.
using Record = std::vector<std::pair<int, std::optional<std::uint64_t>>>;

Record ToRecord(const wire::Node& branch);
std::vector<Record> ToRecords(const wire::Node& branch);

class LineUpClient : public TestClient {
public:
    explicit LineUpClient(LineUpTv& tv) : TestClient(tv) {}

    Reply FindService(const sim::Criteria& criteria, std::int32_t count = 1) {
        return Call(interfaces::ServiceMethod::FindService, criteria, OutObject{}, count);
    }
    Reply GetServiceList(const sim::Criteria& criteria, const sim::TvMode& mode = {-1, -1}, std::int32_t first = 0,
                         std::int32_t count = 0) {
        return Call(interfaces::ServiceNavigationMethod::GetServiceList, criteria, OutObject{}, mode, first, count);
    }
    std::int32_t SetBootupService(std::uint64_t service, const sim::TvMode& mode = {-1, -1}) {
        return Do(interfaces::ServiceNavigationMethod::SetBootupService, service, mode, 0);
    }
    std::int32_t IsTuneAroundNeeded(const Services& services) {
        return Do(interfaces::ScanControlMethod::IsTuneAroundNeeded, services);
    }
};

constexpr std::uint64_t kNorvexOne = 0xfa0000000002002dULL;
