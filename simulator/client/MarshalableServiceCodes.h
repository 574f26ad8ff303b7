#pragma once

#include <cstdint>
#include <list>
#include <utility>

#include <norvex/core/Marshalable.h>

// Lets a list of services with their codes travel, as one array (tag 0) of 12 bytes each: 64 bits
// service id, 32 bits code. Sent only.
class MarshalableServiceCodes final : public TCMarshalable {
public:
    using Services = std::list<std::pair<std::uint64_t, std::uint32_t>>;

    explicit MarshalableServiceCodes(const Services& services) : m_services(services) {}

    bool ClassToTree(TCTreeBranch& branch) override;

private:
    const Services& m_services;
};
