#pragma once

namespace sim {

class Chassis;
class LineUp;
class Pipelines;
class Preparation;
class Subscribers;
class Surroundings;

// The pipelines with what belongs to them, for those parts that build upon them.
struct PipelineParts {
    Subscribers& subscribers;
    Surroundings& surroundings;
    Pipelines& pipelines;
    Preparation& preparation;
};

// Mounts all interfaces that work on pipelines, and what they share. The line-up must outlive them.
PipelineParts MountPipelines(Chassis& chassis, LineUp& lineUp);

// The command `signal` of norvex-simctl.
void AddSignalCommand(Chassis& chassis, Subscribers& subscribers);

} // namespace sim
