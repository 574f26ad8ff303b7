#pragma once

#include <chrono>

// A point of the monotonic clock by which something must be done.
class Deadline {
public:
    using Milliseconds = std::chrono::milliseconds;

    explicit Deadline(Milliseconds limit) : m_end(Clock::now() + limit) {}

    // Rounded up; zero when it has passed.
    Milliseconds GetLeft() const {
        const auto left = std::chrono::ceil<Milliseconds>(m_end - Clock::now());
        return left > Milliseconds::zero() ? left : Milliseconds::zero();
    }
    bool HasPassed() const { return Clock::now() >= m_end; }

private:
    using Clock = std::chrono::steady_clock;

    Clock::time_point m_end;
};
