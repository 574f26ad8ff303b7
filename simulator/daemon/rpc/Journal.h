#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace sim {

class Interface;
struct Operation;

// The description of a call for the journal.
struct CallRecord {
    std::uint64_t sequence;
    std::uint32_t client;
    std::uint32_t session;
    const Interface* interface; // null: unknown
    const Operation* method;    // null: unknown
    std::string_view interfaceName;
    std::string_view methodName;
    std::int16_t methodId;
    const char* injected;   // the injected failure; null: none. A constant.
    std::string_view fault; // why it is malformed; empty if it is not
    std::span<const unsigned char> arguments;
    std::span<const unsigned char> results;
};

// The latest calls, as the bytes sent over the wire: a ring limited in bytes and in entries; the
// oldest are evicted first. A call is formatted as JSON on demand.
class Journal {
public:
    static constexpr std::size_t kDefaultBytes = 8u << 20;
    static constexpr std::size_t kDefaultEntries = 32768;
    // Longer trees are truncated to this.
    static constexpr std::size_t kMaxTree = 16u << 10;

    explicit Journal(std::size_t bytes = kDefaultBytes, std::size_t entries = kDefaultEntries);
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    // The number of the next call or event, from 1.
    std::uint64_t TakeSequence() { return ++m_lastSequence; }
    std::uint64_t GetLastSequence() const { return m_lastSequence; }

    void Add(const CallRecord& call);
    void Clear();

    // Indices of calls since the journal was created, including evicted ones: that of the first
    // kept one and that after the last.
    std::uint64_t GetBegin() const { return m_begin; }
    std::uint64_t GetEnd() const { return m_end; }
    // One call; `place` must be kept.
    nlohmann::json Describe(std::uint64_t place) const;

private:
    struct Entry;

    std::size_t MakeRoom(std::size_t size);
    Entry& At(std::uint64_t place) const;

    std::size_t m_byteCount;
    std::size_t m_entryCount;
    // Neither is cleared when created, so that memory is used only as the journal fills.
    std::unique_ptr<unsigned char[]> m_bytes;
    std::unique_ptr<Entry[]> m_entries;
    std::uint64_t m_begin = 0;
    std::uint64_t m_end = 0;
    std::size_t m_head = 0;
    std::uint64_t m_lastSequence = 0;
};

} // namespace sim
