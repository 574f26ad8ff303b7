#include "Journal.h"

#include <algorithm>
#include <cstring>
#include <ctime>

#include <nlohmann/json.hpp>
#include <wire/Tree.h>

#include "Interface.h"

namespace sim {

using nlohmann::json;

struct Journal::Entry {
    std::uint64_t sequence;
    std::int64_t time; // microseconds since 1970
    const Interface* interface;
    const Operation* method;
    const char* injected;
    std::size_t place;
    std::size_t reserved; // bytes taken in the ring
    std::uint32_t client;
    std::uint32_t session;
    // Bytes kept of each, in this order.
    std::uint32_t argumentsKept;
    std::uint32_t resultsKept;
    std::uint16_t interfaceNameSize;
    std::uint16_t methodNameSize;
    std::uint16_t faultSize;
    std::int16_t methodId;
    std::uint32_t argumentsSize;
    std::uint32_t resultsSize;
};

namespace {

std::int64_t GetTime() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return std::int64_t{now.tv_sec} * 1000000 + now.tv_nsec / 1000;
}

json DescribeArgument(const Argument* argument, const wire::Node& node) {
    const bool isIn = argument != nullptr ? argument->isRead : node.direction == wire::Direction::In;
    json described{{"place", node.tag}, {"direction", isIn ? "in" : "out"}};
    if (argument != nullptr) {
        described["name"] = argument->name;
        described["type"] = argument->type->name;
    }
    // An out text is sent as its length; a malformed one is shown as bytes.
    const bool known = argument != nullptr && node.kind == argument->type->kind &&
                       (argument->type->size == 0 || node.size == argument->type->size);
    if (node.kind == wire::NodeKind::Length)
        described["length"] = TreeToJson(node)["length"];
    else
        described["value"] = known ? argument->type->describe(node) : TreeToJson(node);
    return described;
}

// Makes a truncated tree well-formed: nodes that exceed it end at its end. Returns the well-formed
// size.
std::size_t Mend(unsigned char* tree, std::size_t size) {
    std::size_t at = 0;
    while (size - at >= wire::kNodeHeaderSize) {
        std::uint32_t length = 0;
        std::memcpy(&length, tree + at + 4, sizeof length);
        const std::size_t left = size - at - wire::kNodeHeaderSize;
        if (length > left) {
            length = static_cast<std::uint32_t>(left);
            if (tree[at + 2] == static_cast<unsigned char>(wire::NodeKind::Branch))
                length = static_cast<std::uint32_t>(Mend(tree + at + wire::kNodeHeaderSize, length));
            std::memcpy(tree + at + 4, &length, sizeof length);
        }
        at += wire::kNodeHeaderSize + length;
    }
    return at;
}

// `size` of the `fullSize` bytes are kept.
json DescribeTree(const Operation* method, const unsigned char* tree, std::size_t size, std::size_t fullSize) {
    std::vector<unsigned char> mended;
    if (size < fullSize) {
        mended.assign(tree, tree + size);
        tree = mended.data();
        size = Mend(mended.data(), size);
    }
    json described = json::array();
    wire::NodeCursor cursor(tree, size);
    wire::Node node;
    while (cursor.Next(node)) {
        const auto place = static_cast<std::size_t>(node.tag);
        const bool known = method != nullptr && node.tag >= 0 && place < method->arguments.size();
        described.push_back(DescribeArgument(known ? &method->arguments[place] : nullptr, node));
    }
    return described;
}

} // namespace

Journal::Journal(std::size_t bytes, std::size_t entries)
    : m_byteCount(bytes), m_entryCount(entries), m_bytes(std::make_unique_for_overwrite<unsigned char[]>(bytes)),
      m_entries(std::make_unique_for_overwrite<Entry[]>(entries)) {}

Journal::~Journal() = default;

Journal::Entry& Journal::At(std::uint64_t place) const {
    return m_entries[place % m_entryCount];
}

void Journal::Add(const CallRecord& call) {
    const std::size_t argumentsKept = std::min(call.arguments.size(), kMaxTree);
    const std::size_t resultsKept = std::min(call.results.size(), kMaxTree);
    // Names are stored only for calls that are in no table.
    const std::string_view interfaceName = call.method == nullptr ? call.interfaceName : std::string_view{};
    const std::string_view methodName = call.method == nullptr ? call.methodName : std::string_view{};
    const std::size_t size = argumentsKept + resultsKept + interfaceName.size() + methodName.size() + call.fault.size();
    const std::size_t reserved = (size + 8) & ~std::size_t{7};
    if (reserved > m_byteCount)
        return;
    if (m_end - m_begin == m_entryCount)
        ++m_begin;
    const std::size_t place = MakeRoom(reserved);
    unsigned char* to = m_bytes.get() + place;
    const auto put = [&to](const void* data, std::size_t count) {
        if (count > 0)
            std::memcpy(to, data, count);
        to += count;
    };
    put(call.arguments.data(), argumentsKept);
    put(call.results.data(), resultsKept);
    put(interfaceName.data(), interfaceName.size());
    put(methodName.data(), methodName.size());
    put(call.fault.data(), call.fault.size());
    At(m_end) = {call.sequence,
                 GetTime(),
                 call.interface,
                 call.method,
                 call.injected,
                 place,
                 reserved,
                 call.client,
                 call.session,
                 static_cast<std::uint32_t>(argumentsKept),
                 static_cast<std::uint32_t>(resultsKept),
                 static_cast<std::uint16_t>(interfaceName.size()),
                 static_cast<std::uint16_t>(methodName.size()),
                 static_cast<std::uint16_t>(call.fault.size()),
                 call.methodId,
                 static_cast<std::uint32_t>(call.arguments.size()),
                 static_cast<std::uint32_t>(call.results.size())};
    ++m_end;
    m_head = place + reserved;
}

void Journal::Clear() {
    m_begin = m_end;
    m_head = 0;
}

// Start of `size` free consecutive bytes; evicts the oldest entries.
std::size_t Journal::MakeRoom(std::size_t size) {
    while (m_begin != m_end) {
        const std::size_t tail = At(m_begin).place;
        if (m_head > tail) {
            if (m_byteCount - m_head >= size)
                return m_head;
            if (tail >= size)
                return 0;
        } else if (tail - m_head >= size) {
            return m_head;
        }
        ++m_begin;
    }
    return 0;
}

json Journal::Describe(std::uint64_t place) const {
    const Entry& entry = At(place);
    const unsigned char* bytes = m_bytes.get() + entry.place;
    const unsigned char* results = bytes + entry.argumentsKept;
    const auto* text = reinterpret_cast<const char*>(results + entry.resultsKept);
    json described{{"sequence", entry.sequence},
                   {"time", entry.time},
                   {"client", entry.client},
                   {"session", entry.session},
                   {"id", entry.methodId}};
    if (entry.method != nullptr) {
        described["interface"] = entry.interface->GetName();
        described["method"] = entry.method->name;
    } else {
        described["interface"] = std::string(text, entry.interfaceNameSize);
        described["method"] = std::string(text + entry.interfaceNameSize, entry.methodNameSize);
    }
    if (entry.faultSize > 0)
        described["fault"] = std::string(text + entry.interfaceNameSize + entry.methodNameSize, entry.faultSize);
    described["arguments"] = DescribeTree(entry.method, bytes, entry.argumentsKept, entry.argumentsSize);
    described["results"] = DescribeTree(entry.method, results, entry.resultsKept, entry.resultsSize);
    if (entry.injected != nullptr)
        described["injected"] = entry.injected;
    if (entry.argumentsKept < entry.argumentsSize)
        described["argumentsCut"] = entry.argumentsSize;
    if (entry.resultsKept < entry.resultsSize)
        described["resultsCut"] = entry.resultsSize;
    return described;
}

} // namespace sim
