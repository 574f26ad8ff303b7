#pragma once

#include "ArgumentType.h"
#include "LineUp.h"
#include "Rect.h"

namespace sim {

extern const ArgumentType kRect;   // branch {0..3: x, y, width, height, 32 bits each}
extern const ArgumentType kTvMode; // branch {0, 1: antenna mode, service mode, 32 bits each}
extern const ArgumentType kStatus; // the pipelines' snapshot

// Of a node that fits the form.
Rect ReadRect(const wire::Node& node);
TvMode ReadTvMode(const wire::Node& node);
void WriteTvMode(wire::TreeWriter& tree, std::int16_t place, const TvMode& tvMode);

} // namespace sim
