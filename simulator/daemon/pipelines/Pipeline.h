#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include <norvex/client/ServiceId.h>
#include <norvex/client/TPMSStatus.h>

#include "Handle.h"
#include "LineUp.h"
#include "Rect.h"

namespace sim {

// The processed parts of a broadcast stream.
struct DtvModes {
    bool demux = false;
    bool audio = false;
    bool video = false;

    bool operator==(const DtvModes&) const = default;
};

struct Crop {
    Rect first;
    Rect second;

    bool operator==(const Crop&) const = default;
};

struct Preview {
    std::int32_t source = 0;
    std::uint64_t service = INVALID_SERVICE_ID;

    bool operator==(const Preview&) const = default;
};

// The broadcast and the streamed service last shown in a TV mode.
struct Latest {
    std::uint64_t broadcast = INVALID_SERVICE_ID;
    std::uint64_t streamed = INVALID_SERVICE_ID;

    bool operator==(const Latest&) const = default;
};

// The changeable state of a pipeline, with the values of a new one.
struct PipelineState {
    std::int32_t source = 0; // the tuner
    std::uint64_t service = INVALID_SERVICE_ID;
    ServiceFacts facts; // of the service
    TvMode tvMode;
    std::map<TvMode, Latest> latest;
    std::optional<Preview> preview;

    // As set by clients; 0 is off.
    std::int32_t videoMute = 0;
    std::int32_t audioMute = 0;
    std::optional<std::int32_t> windowId;
    std::optional<Crop> crop;
    std::optional<Rect> mainPicture; // where zooming has put it; else the whole screen
    DtvModes dtvModes;
    std::set<std::pair<std::int32_t, std::uint32_t>> hdmiAnalysis; // inputs, and the clients that analyse them
    std::uint32_t decoderRestarts = 0;

    // Which of PreSetSourceA, B and C were called, in order: since the last change of source or
    // service, and before that change.
    std::string preparedNext;
    std::string preparedLast;

    // The tuner's transponder, unless it is lent to a scan, which has moved it to another one.
    Transponder tuner;
    std::optional<Transponder> lentTuner;
    // Whether the service's information is received, and has captions.
    bool receiving = false;
    bool captions = false;
    // Time of the last event of each kind, in milliseconds since the daemon's start.
    std::map<ESIEvent, std::uint64_t> events;

    bool operator==(const PipelineState&) const = default;
};

struct Pipeline : PipelineState {
    explicit Pipeline(Handle itsHandle) : handle(itsHandle), name(itsHandle.ToText()) {}

    const Handle handle;
    const std::string name; // of the handle, for log lines
    // Open sessions of this pipeline: its reference count.
    std::int32_t sessions = 0;

    // Where the tuner is: it receives one transponder.
    const Transponder& GetTuner() const { return lentTuner ? *lentTuner : tuner; }
    bool IsAsNew() const { return PipelineState(*this) == PipelineState(); }
};

// A change of what a pipeline shows, as requested by a client.
struct Change {
    std::uint64_t sequence = 0; // of the call
    std::optional<std::int32_t> source;
    std::optional<std::uint64_t> service;
    std::optional<TvMode> tvMode;
};

} // namespace sim
