#pragma once

#include "PipelineInterface.h"

namespace sim {

// com.holvi.IDataControl: data that comes with a service.
class DataControl : public PipelineInterface {
public:
    DataControl(Context& context, Pipelines& pipelines);

private:
    void CheckCaptionExist(const Call& call, const ArgumentReader& in, ReplyWriter& out);
};

} // namespace sim
