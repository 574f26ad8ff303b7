#pragma once

#include <vector>

#include <norvex/core/Marshalable.h>

// Lets a list of numbers travel, as one array (tag 0). Made around the caller's list for the length
// of a call.
class MarshalableIntegers final : public TCMarshalable {
public:
    // A const list is only ever written.
    explicit MarshalableIntegers(const std::vector<int>& numbers)
        : m_numbers(const_cast<std::vector<int>&>(numbers)) {}

    bool ClassToTree(TCTreeBranch& branch) override;
    bool TreeToClass(TCTreeBranch& branch) override;

private:
    std::vector<int>& m_numbers;
};
