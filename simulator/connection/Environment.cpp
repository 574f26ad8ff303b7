#include "Environment.h"

#include <cstdlib>
#include <random>

#include <sys/random.h>

#include <base/Number.h>
#include <base/Path.h>

namespace {

std::chrono::milliseconds FindLimit(const char* name, int usual) {
    constexpr int kLongest = 3600000;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody here changes the environment.
    const char* text = std::getenv(name);
    int number = 0;
    const bool isGiven = text != nullptr && sim::ParseNumber(text, number) && number >= 1 && number <= kLongest;
    return std::chrono::milliseconds(isGiven ? number : usual);
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
    return sim::FindSocketPath();
}

Limits Limits::Find() {
    return {FindLimit("NORVEX_CONNECT_LIMIT_MS", 1000), FindLimit("NORVEX_CALL_LIMIT_MS", 5000)};
}

namespace {

ClientToken& GetToken() {
    static ClientToken token = MakeToken();
    return token;
}

} // namespace

const ClientToken& ClientToken::Get() {
    return GetToken();
}

void ClientToken::Renew() {
    GetToken() = MakeToken();
}
