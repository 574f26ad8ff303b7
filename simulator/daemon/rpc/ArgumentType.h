#pragma once

#include <cstdint>

#include <nlohmann/json_fwd.hpp>
#include <wire/Tree.h>

namespace sim {

// The type of an argument: how a node is checked against it, and how the journal shows it.
struct ArgumentType {
    const char* name;
    wire::NodeKind kind;
    // Size of a value; 0 for other kinds.
    std::uint32_t size;
    // Whether a node of that kind and size is valid; null: always. Branches have already been
    // checked at every depth.
    bool (*check)(const wire::Node&);
    // Called for nodes of that kind and size, including invalid ones and those that the journal has
    // truncated: shows what is available.
    nlohmann::json (*describe)(const wire::Node&);

    bool Fits(const wire::Node& node) const;
};

extern const ArgumentType kInt;      // 32 bits, signed
extern const ArgumentType kUInt;     // 32 bits, unsigned
extern const ArgumentType kUShort;   // 16 bits, unsigned
extern const ArgumentType kBool;     // 8 bits
extern const ArgumentType kNumber64; // 64 bits, unsigned: "0x..." in JSON
extern const ArgumentType kText;
extern const ArgumentType kIntList; // std::vector<std::int32_t>
extern const ArgumentType kRect;
extern const ArgumentType kTvMode;
extern const ArgumentType kCriteria;
extern const ArgumentType kServiceCodes; // std::vector<values::ServiceCode>
extern const ArgumentType kMenuItem;
extern const ArgumentType kMenuItemList; // std::vector<values::MenuItem>
extern const ArgumentType kProgramme;
extern const ArgumentType kStatus;
extern const ArgumentType kRecord; // as values/ServiceFields.h describes it
extern const ArgumentType kRecordList;
extern const ArgumentType kAnything;

// "0x..." without leading zeros: 64-bit numbers lose digits in JSON readers.
nlohmann::json ToHexText(std::uint64_t value);
// A node of unknown type: each node in it with its tag, kind and bytes in hexadecimal digits.
nlohmann::json TreeToJson(const wire::Node& node);

} // namespace sim
