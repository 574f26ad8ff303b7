#pragma once

namespace sim {

class Chassis;

// The commands of norvex-simctl, each group in a file of its own.
void AddStateCommands(Chassis& chassis); // state, reset, set
void AddCallsCommand(Chassis& chassis);  // calls
void AddInjectCommand(Chassis& chassis); // inject
void AddWaitCommand(Chassis& chassis);   // wait

} // namespace sim
