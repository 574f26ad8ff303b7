#pragma once

#include <cstdint>
#include <string>

// The device's services as the TV serves them; each call is one exchange. Any thread.
namespace deviceservice {

constexpr int kFailed = -1;

// Calls `method` with one text. 0 on success; kFailed when it was refused or there was no exchange.
// `value`, when not null, is filled on success alone.
int Call(const std::string& method, std::int16_t methodId, const char* text, int* value = nullptr);

} // namespace deviceservice
