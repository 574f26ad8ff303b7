#include "Environment.h"

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <random>
#include <sys/random.h>
#include <unistd.h>

namespace {

const char* FindVariable(const char* name) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody here changes the environment.
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0' ? value : nullptr;
}

std::chrono::milliseconds FindLimit(const char* name, int usual) {
    constexpr int kLongest = 3600000;
    const char* text = FindVariable(name);
    int number = 0;
    if (text != nullptr) {
        const char* end = text + std::strlen(text);
        const auto result = std::from_chars(text, end, number);
        if (result.ec == std::errc() && result.ptr == end && number >= 1 && number <= kLongest)
            return std::chrono::milliseconds(number);
    }
    return std::chrono::milliseconds(usual);
}

ClientToken MakeToken() {
    ClientToken token{};
    if (getrandom(token.bytes, sizeof token.bytes, 0) != sizeof token.bytes) {
        std::random_device device;
        for (unsigned char& byte : token.bytes)
            byte = static_cast<unsigned char>(device());
    }
    return token;
}

} // namespace

std::string FindSocketPath() {
    if (const char* path = FindVariable("NORVEX_SOCKET"))
        return path;
    if (const char* directory = FindVariable("XDG_RUNTIME_DIR"))
        return std::string(directory) + "/norvex.sock";
    return "/tmp/norvex-" + std::to_string(getuid()) + "/norvex.sock";
}

Limits Limits::Find() {
    return {FindLimit("NORVEX_CONNECT_LIMIT_MS", 1000), FindLimit("NORVEX_CALL_LIMIT_MS", 5000)};
}

const ClientToken& ClientToken::Get() {
    static const ClientToken token = MakeToken();
    return token;
}
