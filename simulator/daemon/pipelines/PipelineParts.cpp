#include "PipelineParts.h"

#include "AVControl.h"
#include "Chassis.h"
#include "DataControl.h"
#include "PipelineUtility.h"
#include "Pipelines.h"
#include "Preparation.h"
#include "ReferenceCount.h"
#include "ServiceNavigation.h"
#include "SourceControl.h"
#include "Subscribers.h"
#include "Surroundings.h"
#include "TunerControl.h"
#include "VideoControl.h"
#include "ZoomControl.h"

namespace sim {

PipelineParts MountPipelines(Chassis& chassis, LineUp& lineUp) {
    auto& subscribers = chassis.Mount<Subscribers>(chassis);
    auto& surroundings = chassis.Mount<Surroundings>(chassis);
    auto& pipelines = chassis.Mount<Pipelines>(chassis, lineUp, surroundings, subscribers);
    auto& preparation = chassis.Mount<Preparation>(chassis, pipelines);

    chassis.Mount<ReferenceCount>(chassis, pipelines);
    chassis.Mount<AVControl>(chassis, pipelines);
    chassis.Mount<VideoControl>(chassis, pipelines);
    chassis.Mount<TunerControl>(chassis, pipelines);
    chassis.Mount<DataControl>(chassis, pipelines);
    chassis.Mount<SourceControl>(chassis, pipelines, preparation, surroundings);
    chassis.Mount<ServiceNavigation>(chassis, lineUp, pipelines, preparation);
    chassis.Mount<PipelineUtility>(chassis, pipelines, preparation);
    chassis.Mount<ZoomControl>(chassis, pipelines);

    AddSignalCommand(chassis, subscribers);
    return {subscribers, surroundings, pipelines, preparation};
}

} // namespace sim
