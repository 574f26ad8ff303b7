#pragma once

#include <optional>

#include "PipelineInterface.h"
#include "Preparation.h"

namespace sim {

// com.holvi.IServiceNavigation: what a pipeline is tuned to, and the way through the line-up.
class ServiceNavigation : public PipelineInterface {
public:
    ServiceNavigation(Context& context, LineUp& lineUp, Pipelines& pipelines,
                      Preparation& preparation);

private:
    void GetTvMode(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void GetServiceList(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void SetTvMode(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void SetTvModeAndService(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void SetDTVMode(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void SetService(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void SetBootupService(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void GetLatestVeldaServiceId(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void GetLatestServiceId(const Call& call, const ArgumentReader& in, ReplyWriter& out);

    // Fields of -1 mean those that the pipeline has. False, and a line in the log, for a mode that
    // no TV has.
    bool ReadMode(const Pipeline& pipeline, const wire::Node& node, const char* operation,
                  TvMode& tvMode);
    void Show(const Call& call, std::uint64_t service, const std::optional<TvMode>& tvMode);
    void GetLatest(const Call& call, const ArgumentReader& in, std::uint64_t Latest::*kind,
                   ReplyWriter& out);
    void RefuseWithoutLineUp(const char* operation, ReplyWriter& out);

    LineUp& m_lineUp;
    Preparation& m_preparation;
};

} // namespace sim
