#pragma once

#include <cstdint>
#include <span>

#include "FakeDaemon.h"

// Opens and closes sessions as a TV does, and answers every other call with `tree`.
void AnswerCall(FakeDaemon::Connection& connection, const wire::Message& message, std::span<const std::uint8_t> tree);

// A daemon that welcomes, and answers calls with `tree`. The bytes must live until the next one
// is set.
void ReplyWith(std::span<const std::uint8_t> tree);
// Calls that have been answered with it since then.
int GetReplyCount();
