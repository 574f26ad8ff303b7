#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "LineUp.h"
#include "ServiceRecord.h"

// The line-up as people read and edit it; docs/lineup.md describes it.
namespace sim {

// Takes what a text holds, line by line, in the text's order.
class LineUpSink {
public:
    virtual ~LineUpSink() = default;
    // Each: empty, or what was expected instead.
    virtual std::string AddService(const ServiceRecord& service) = 0;
    virtual std::string AddProgramme(std::uint64_t service, const ProgrammeRecord& programme) = 0;
};

// False at the first malformed line: `error` is "NAME:LINE: expected ..., found ...".
// What came before it has gone to the sink.
bool ReadLineUp(std::string_view text, const std::string& name, LineUpSink& sink,
                std::string& error);

// Writes what ReadLineUp reads: services first to last, each followed by its programmes.
class LineUpWriter {
public:
    void Add(const ServiceRecord& service);
    void Add(const ProgrammeRecord& programme);
    // What has been written since the last time.
    std::string Take() { return std::exchange(m_text, {}); }

private:
    std::string m_text;
    std::string m_heading; // that the next service stands under
};

} // namespace sim
