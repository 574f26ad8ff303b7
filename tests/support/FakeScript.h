#pragma once

#include "FakeCore.h"

// Between the script of remote replies and the helper that plays it.
namespace FakeScript {

// The reply for the next call of `method`.
FakeCore::Reply next(const std::string& method);

} // namespace FakeScript
