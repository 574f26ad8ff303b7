// What the control socket hears: a line that should be a request. The answers are lines of JSON
// objects; a refusal says what was wrong. A request that is refused changes nothing.

#include <algorithm>
#include <string>

#include <nlohmann/json.hpp>
#include <sys/socket.h>
#include <unistd.h>

#include "FuzzedTv.h"
#include "Require.h"

namespace {

using nlohmann::json;

// A file's path leads into the TV's own directory, and numbers of items that would only take time
// are left out: the TV takes a million. False: nothing is to be sent.
bool Tame(std::string& line) {
    json request = json::parse(line, nullptr, false);
    if (!request.is_object() || !request.contains("command"))
        return true;
    if (request["command"] == "set" && request.value("name", json()) == "items" &&
        request.value("words", json()).dump().size() > 8)
        return false;
    if (request["command"] == "lineup" && request.contains("path") && request["path"].is_string()) {
        std::string name = request["path"].get<std::string>();
        std::replace(name.begin(), name.end(), '/', '_');
        request["path"] = FuzzedTv::Get().GetFile(name);
        line = request.dump(-1, ' ', false, json::error_handler_t::replace);
    }
    return true;
}

std::string Take(int socket) {
    std::string text;
    for (;;) {
        char bytes[65536];
        const ssize_t size = recv(socket, bytes, sizeof bytes, MSG_DONTWAIT);
        if (size <= 0)
            return text;
        text.append(bytes, static_cast<std::size_t>(size));
        FuzzedTv::Get().Settle();
    }
}

// Whether it was refused.
bool CheckAnswers(std::string_view text) {
    bool refused = false;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        REQUIRE(end != std::string_view::npos);
        const json answer = json::parse(text.substr(0, end), nullptr, false);
        REQUIRE(answer.is_object());
        if (answer.contains("error")) {
            REQUIRE(answer["error"].is_string());
            refused = true;
        }
        text.remove_prefix(end + 1);
    }
    return refused;
}

// What a request can change, without what goes on by itself.
json DescribeState() {
    json state = FuzzedTv::Get().GetContext().DescribeState();
    state["daemon"].erase("sequence");
    state["daemon"].erase("signals");
    state["clock"].erase("now");
    return state;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedTv& tv = FuzzedTv::Get();
    std::string line(reinterpret_cast<const char*>(data), size);
    line.resize(std::min(line.find('\n'), line.size()));
    if (!Tame(line))
        return 0;
    line += '\n';
    static const json fresh = DescribeState();
    const int socket = tv.ConnectControl();
    REQUIRE(send(socket, line.data(), line.size(), MSG_NOSIGNAL) ==
            static_cast<ssize_t>(line.size()));
    tv.Settle();
    const bool refused = CheckAnswers(Take(socket));
    close(socket);
    tv.Settle();
    if (refused)
        REQUIRE(DescribeState() == fresh);
    else
        tv.GetContext().Reset();
    return 0;
}
