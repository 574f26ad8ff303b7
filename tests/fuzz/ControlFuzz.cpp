// What the control socket gets: a line that should be a request. The answer is lines of JSON objects, the last of which
// has the status. A request that is refused changes nothing.

#include <algorithm>
#include <string>

#include <sys/socket.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "FuzzedTv.h"
#include "Require.h"

namespace {

using nlohmann::json;

// Files are named in the TV's own directory, and numbers of items that would only take time are left out: the TV takes a
// million. False: nothing is to be sent.
bool Tame(std::string& line) {
    json request = json::parse(line, nullptr, false);
    if (!request.is_object() || !request.contains("arguments") || !request["arguments"].is_array())
        return true;
    json& arguments = request["arguments"];
    const auto has = [&](const char* text) { return std::count(arguments.begin(), arguments.end(), text) > 0; };
    if (has("items") && arguments.dump().size() > 24)
        return false;
    if (!has("lineup"))
        return true;
    request["directory"] = FuzzedTv::Get().GetFile("");
    for (json& argument : arguments) {
        if (!argument.is_string())
            continue;
        std::string name = argument.get<std::string>();
        std::replace(name.begin(), name.end(), '/', '_');
        argument = name;
    }
    line = request.dump(-1, ' ', false, json::error_handler_t::replace);
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

// Whether it was refused. An answer that waits for something has no status yet.
bool CheckAnswer(std::string_view text) {
    bool refused = false;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        REQUIRE(end != std::string_view::npos);
        const json line = json::parse(text.substr(0, end), nullptr, false);
        text.remove_prefix(end + 1);
        REQUIRE(line.is_object() && line.size() == 1);
        if (!line.contains("status"))
            continue;
        REQUIRE(text.empty() && line["status"].is_number_unsigned() && line["status"] <= 2);
        refused = line["status"] != 0;
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
    REQUIRE(send(socket, line.data(), line.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(line.size()));
    tv.Settle();
    const bool refused = CheckAnswer(Take(socket));
    close(socket);
    tv.Settle();
    if (refused)
        REQUIRE(DescribeState() == fresh);
    else
        tv.GetContext().Reset();
    return 0;
}
