#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

namespace sim {

// One line about a call that the journal has described; long values are truncated:
//
//     #12 client 1 IDebugPrintControl.Execute(command="items") = status 1, screen "..."
std::string ToLine(const nlohmann::json& call);

} // namespace sim
