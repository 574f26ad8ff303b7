#pragma once

namespace sim {

class Context;
class LineUp;
class Pipelines;
class Preparation;
class Subscribers;
class Inputs;

// The pipelines with what belongs to them, for those parts that build upon them.
struct PipelineComponents {
    Subscribers& subscribers;
    Inputs& inputs;
    Pipelines& pipelines;
    Preparation& preparation;
};

// Registers all interfaces that work on pipelines, and what they share. The line-up must outlive them.
PipelineComponents RegisterPipelines(Context& context, LineUp& lineUp);

// The command `signal` of norvex-simctl.
void AddSignalCommand(Context& context, Subscribers& subscribers);

} // namespace sim
