#pragma once

#include <cstdint>
#include <string>

// The device's services as the TV serves them; each call is one exchange. Any thread.
namespace deviceservice {

// What a call answers when there was no exchange.
constexpr int kNoAnswer = -1;

// Calls `method` with one text. The remote status, 0 on success; `value`, when not null, is filled
// on success alone.
int Call(const std::string& method, std::int16_t methodId, const char* text, int* value = nullptr);

} // namespace deviceservice
