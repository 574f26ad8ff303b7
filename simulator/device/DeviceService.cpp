// The TV's log tags and key-value store. Each call is one exchange. Any thread.
#include <mutex>

#include <interfaces/Interfaces.h>
#include <norvex/client/NorvexAPIConnection.h>
#include <norvex/core/MessageBuffer.h>
#include <norvex/device/LogTags.h>
#include <norvex/device/Vconf.h>
#include <wire/Tree.h>

namespace {

using Method = interfaces::DeviceMethod;

constexpr int kFailed = -1;

// Arguments by place: the status, the text and, for some operations, the value.
constexpr std::int16_t kStatus = 0;
constexpr std::int16_t kText = 1;
constexpr std::int16_t kValue = 2;

// The process's connection to the device's services.
struct Line {
    std::mutex mutex;
    NorvexAPIConnection connection{"com.holvi.Norvex.SignalIFace", "/com/holvi/Norvex/SignalObject", true};
};

// Never closed: further calls follow, and the process may be ending.
Line& GetLine() {
    static auto* line = new Line;
    return *line;
}

// Makes the call with one text. 0 on success; kFailed if it was refused or the exchange failed.
// `value`, if not null, is only set on success.
int Call(Method method, const char* text, int* value = nullptr) {
    int status = kFailed;
    wire::Buffer tree;
    wire::TreeWriter writer(tree);
    writer.PutValue(kStatus, status);
    writer.PutText(kText, text, wire::Direction::In);
    if (value != nullptr)
        writer.PutValue(kValue, *value);
    TCMessageBuffer arguments;
    arguments.Append(tree.GetData(), tree.GetSize());

    TCMessageBuffer reply;
    {
        Line& line = GetLine();
        const std::lock_guard lock(line.mutex);
        if (!line.connection.Exchange(std::string(interfaces::kTable<Method>.name),
                                      std::string(interfaces::GetMethodName(method)), static_cast<short>(method), false,
                                      arguments, reply))
            return kFailed;
    }
    // A tree that is malformed anywhere is not used.
    if (!wire::IsWellFormed(reply.GetData(), reply.GetSize()))
        return kFailed;
    int answer = 0;
    bool hasAnswer = false;
    wire::NodeCursor cursor(reply.GetData(), reply.GetSize());
    wire::Node node;
    while (cursor.Next(node)) {
        if (node.tag == kStatus)
            node.Get(status);
        else if (node.tag == kValue)
            hasAnswer = node.Get(answer);
    }
    if (status <= 0 || (value != nullptr && !hasAnswer))
        return kFailed;
    if (value != nullptr)
        *value = answer;
    return 0;
}

} // namespace

int startdlogtagbydefault(const char* tag) {
    return Call(Method::StartLogTag, tag);
}

int stopdlogtagbydefault(const char* tag) {
    return Call(Method::StopLogTag, tag);
}

int vconf_get_int(const char* key, int* value) {
    return Call(Method::GetInt, key, value);
}
