#include "ServiceLineUp.h"

#include <cinttypes>

#include <nlohmann/json.hpp>
#include <norvex/client/ServiceId.h>
#include <norvex/client/TvMode.h>

#include "BuiltInLineUp.h"
#include "Results.h"

namespace sim {

using nlohmann::json;

namespace {

// In the database.
const char kLineUpPart[] = "lineUp";
const char kBuiltInKey[] = "builtIn"; // 1: the built-in one; missing: never set up
const char kBootupPart[] = "bootup";

// The profile of a service mode's services.
std::int32_t ToProfile(std::int32_t serviceMode) {
    return serviceMode == SERVICE_MODE_DEFAULT ? SERVICE_PROFILE_DEFAULT : SERVICE_PROFILE_OPERATOR;
}

} // namespace

ServiceLineUp::ServiceLineUp(Context& context, Programmes& programmes)
    : m_context(context), m_programmes(programmes), m_tables(context.database),
      m_queries(context.database, context.log) {}

bool ServiceLineUp::Start(const LineUpSource* given, std::string& error) {
    if (!m_tables.Prepare() || !m_programmes.Prepare()) {
        error = "line-up: " + m_context.database.GetError();
        return false;
    }
    m_context.numbers.ForEach(kBootupPart, [this](std::string_view key, std::int64_t value) {
        if (!m_bootup)
            m_bootup = Bootup{};
        if (key == "service")
            m_bootup->service = static_cast<std::uint64_t>(value);
        else if (key == "antenna")
            m_bootup->tvMode.antenna = static_cast<std::int32_t>(value);
        else if (key == "serviceMode")
            m_bootup->tvMode.serviceMode = static_cast<std::int32_t>(value);
        else if (key == "option")
            m_bootup->option = static_cast<std::int32_t>(value);
    });
    std::optional<bool> builtIn;
    m_context.numbers.ForEach(kLineUpPart, [&builtIn](std::string_view key, std::int64_t value) {
        if (key == kBuiltInKey)
            builtIn = value != 0;
    });

    error = m_context.numbers.GetReadError();
    if (!error.empty())
        return false;

    m_new = given != nullptr ? *given : LineUpSource{kBuiltIn, kBuiltInLineUp};
    m_isNew = given != nullptr || builtIn.value_or(true);
    if (given != nullptr || !builtIn)
        return Load(m_new, error);
    if (!m_tables.Count(m_counts)) {
        error = "line-up: " + m_context.database.GetError();
        return false;
    }
    Loaded(m_isNew ? kBuiltIn : "database");
    return true;
}

bool ServiceLineUp::Load(const LineUpSource& source, std::string& error) {
    const bool isNew = &source == &m_new;
    LineUpCounts counts;
    const auto keep = [&] {
        return m_context.numbers.Put(kLineUpPart, kBuiltInKey, isNew && IsBuiltIn()) && m_tables.Count(counts);
    };
    if (!m_tables.Replace(source.text, source.name, error, keep)) {
        m_context.log.Write(kTunerTag, "line-up refused: %s", error.c_str());
        return false;
    }
    m_isNew = isNew;
    m_counts = counts;
    Loaded(source.name);
    return true;
}

void ServiceLineUp::Loaded(const std::string& name) {
    m_context.changes.Mark("/lineUp");
    m_name = name;
    ++m_loads;
    m_context.log.Write(kTunerTag, "line-up %s: %" PRId64 " services, %" PRId64 " programmes", name.c_str(),
                        m_counts.services, m_counts.programmes);
    if (m_listener)
        m_listener();
}

void ServiceLineUp::List(const values::Criteria& criteria, const TvMode& tvMode, std::int32_t first, std::int32_t count,
                         ReplyWriter& out) {
    m_queries.List(criteria, {tvMode.antenna, ToProfile(tvMode.serviceMode), first, count}, out);
}

std::int32_t ServiceLineUp::SetBootupService(std::uint64_t service, const TvMode& tvMode, std::int32_t option) {
    const auto refuse = [&](std::int32_t result, const char* why) {
        m_context.log.Write(kTunerTag, "SetBootupService refused: service 0x%" PRIx64 " %s", service, why);
        return result;
    };
    if (service == INVALID_SERVICE_ID)
        return refuse(kBadArgument, "is the invalid service");
    const auto facts = FindFacts(service);
    if (!facts)
        return refuse(kUnknown, "is not in the line-up");
    if (tvMode.antenna < ANTENNA_NONE || tvMode.antenna > ANTENNA_SATELLITE || tvMode.serviceMode < SERVICE_MODE_NONE)
        return refuse(kBadArgument, "with an invalid TV mode");
    if (tvMode.antenna != ANTENNA_NONE && tvMode.antenna != facts->antenna)
        return refuse(kRefused, "belongs to another antenna");

    Bootup bootup{service, tvMode, option};
    bootup.tvMode.antenna = facts->antenna;
    if (tvMode.serviceMode == SERVICE_MODE_NONE)
        bootup.tvMode.serviceMode = facts->profile == SERVICE_PROFILE_DEFAULT ? 0 : 1;
    Transaction transaction(m_context.database);
    NumberStore& numbers = m_context.numbers;
    if (!transaction.IsOpen() || !numbers.Put(kBootupPart, "service", static_cast<std::int64_t>(service)) ||
        !numbers.Put(kBootupPart, "antenna", bootup.tvMode.antenna) ||
        !numbers.Put(kBootupPart, "serviceMode", bootup.tvMode.serviceMode) ||
        !numbers.Put(kBootupPart, "option", option) || !transaction.Commit())
        return refuse(kNotKept, m_context.database.GetError().c_str());
    m_context.changes.Mark("/lineUp");
    m_bootup = bootup;
    m_context.log.Write(kTunerTag, "the TV starts with service 0x%" PRIx64, service);
    return kDone;
}

json ServiceLineUp::DescribeState() const {
    json described{{"source", m_name},
                   {"services", m_counts.services},
                   {"air", m_counts.air},
                   {"cable", m_counts.cable},
                   {"satellite", m_counts.satellite},
                   {"streamed", m_counts.streamed},
                   {"transponders", m_counts.transponders},
                   {"programmes", m_counts.programmes},
                   {"bootup", nullptr}};
    if (m_bootup)
        described["bootup"] = {{"service", ToHexText(m_bootup->service)},
                               {"antenna", m_bootup->tvMode.antenna},
                               {"serviceMode", m_bootup->tvMode.serviceMode},
                               {"option", m_bootup->option}};
    return described;
}

bool ServiceLineUp::Reset() {
    std::string error;
    if (m_isNew ? !m_programmes.ForgetCollected() : !Load(m_new, error))
        return false;
    if (!m_context.numbers.Clear(kBootupPart))
        return false;
    m_bootup.reset();
    return true;
}

} // namespace sim
