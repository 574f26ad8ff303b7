#pragma once

#include <cstdint>

#include <nlohmann/json_fwd.hpp>
#include <wire/Tree.h>

// The type of an argument: how it is told from a malformed one, and how the journal describes it. Components may have
// types of their own.
namespace sim {

struct ArgumentType {
    const char* name;
    wire::NodeKind kind;
    // Size of a value; 0 for other kinds.
    std::uint32_t size;
    // Whether a node of that kind and size is well formed; null: always. Branches have been found so at every depth
    // before.
    bool (*check)(const wire::Node&);
    // Called for nodes of that kind and size, also for those that did not pass or that the journal
    // has cut short.
    nlohmann::json (*describe)(const wire::Node&);

    bool Fits(const wire::Node& node) const;
};

extern const ArgumentType kInt;      // 4 bytes, signed
extern const ArgumentType kUInt;     // 4 bytes, unsigned
extern const ArgumentType kUShort;   // 2 bytes, unsigned
extern const ArgumentType kBool;     // 1 byte
extern const ArgumentType kNumber64; // 8 bytes, unsigned: a number, "0x..." in JSON
extern const ArgumentType kText;
extern const ArgumentType kIntList; // branch {0: array of 32-bit numbers}
extern const ArgumentType kAnything;

// "0x..." with no leading zeros: 64-bit numbers lose digits in JSON readers.
nlohmann::json ToHexText(std::uint64_t value);
// What no type explains: each node with its tag, kind and bytes in hexadecimal digits.
nlohmann::json TreeToJson(const wire::Node& node);

} // namespace sim
