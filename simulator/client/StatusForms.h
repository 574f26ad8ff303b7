#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <norvex/client/NorvexHandle.h>
#include <norvex/client/TPMSStatus.h>
#include <norvex/core/Marshalable.h>

// The forms in which the parts of a snapshot travel.

// When an event was last seen.
struct __attribute__((packed)) EventTime {
    std::int32_t event;
    std::uint64_t milliseconds;
};
static_assert(sizeof(EventTime) == 12, "it travels as it stands");

// A pipeline: profile (0), screen (1), its event times (2).
class PipelineForm final : public TCMarshalable {
public:
    bool ClassToTree(TCTreeBranch& branch) override;
    bool TreeToClass(TCTreeBranch& branch) override;

    NorvexHandle handle;
    std::vector<EventTime> times;
};

// A line of the snapshot: profile (0), screen (1), text (2).
class EntryForm final : public TCMarshalable {
public:
    bool ClassToTree(TCTreeBranch& branch) override;
    bool TreeToClass(TCTreeBranch& branch) override;

    NorvexHandle handle;
    std::string text;
};

// A list of either, one child an element.
template <class ArgumentType> class FormList final : public TCMarshalable {
public:
    bool ClassToTree(TCTreeBranch& branch) override;
    bool TreeToClass(TCTreeBranch& branch) override;
    int GetMarshalableStorageType() override { return 1; }

    std::vector<ArgumentType> elements;
};
