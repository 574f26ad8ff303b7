#pragma once

#include <cstdint>
#include <span>

#include "FarSide.h"

// Opens and closes sessions as a TV does, and answers every other call with `tree`.
void AnswerCall(FarSide::Line& line, const wire::Message& message,
                std::span<const std::uint8_t> tree);

// A far side that welcomes, and answers calls with `tree`. The bytes must live until the next one
// is set.
void ReplyWith(std::span<const std::uint8_t> tree);
// Calls that have been answered with it since then.
int GetReplyCount();
