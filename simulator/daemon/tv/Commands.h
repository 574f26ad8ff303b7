#pragma once

namespace sim {

class Context;

// The commands of norvex-simctl, each group in its own file.
void AddStateCommands(Context& context); // state, reset, set
void AddCallsCommand(Context& context);  // calls
void AddInjectCommand(Context& context); // inject
void AddOperationsCommand(Context& context);
void AddWaitCommand(Context& context); // wait

} // namespace sim
