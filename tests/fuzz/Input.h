#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

// A target's input, used up from the front. What is asked for beyond its end is zero or empty.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : m_rest(data, size) {}

    bool IsEmpty() const { return m_rest.empty(); }
    std::uint8_t Byte() {
        const auto byte = Take(1);
        return byte.empty() ? std::uint8_t{0} : byte[0];
    }
    // Two bytes, the lower one first.
    std::uint16_t Short() {
        const std::uint8_t low = Byte();
        return static_cast<std::uint16_t>(low | Byte() << 8);
    }
    // So many bytes, or those that are left.
    std::span<const std::uint8_t> Take(std::size_t size) {
        const auto taken = m_rest.first(std::min(size, m_rest.size()));
        m_rest = m_rest.subspan(taken.size());
        return taken;
    }
    std::string_view Text(std::size_t size) {
        const auto taken = Take(size);
        return {reinterpret_cast<const char*>(taken.data()), taken.size()};
    }
    std::span<const std::uint8_t> Rest() const { return m_rest; }

private:
    std::span<const std::uint8_t> m_rest;
};
