#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace bench {

// The majors are spread over all that there are; a service's minor is how often its major came.
constexpr int kMajors = 65536;

// A line-up of services over air, listed and of the profile 0, as a file that `norvex-sim --lineup`
// takes. Owns the file.
class LineUp {
public:
    // With `programmes` each service has one with a title, all day long.
    explicit LineUp(int services, bool programmes = false);
    ~LineUp();
    LineUp(const LineUp&) = delete;
    LineUp& operator=(const LineUp&) = delete;

    const std::string& GetPath() const { return m_path; }
    int GetServices() const { return m_services; }

private:
    int m_services;
    std::string m_path;
};

// What SQLite takes by itself: the daemon's own tables in memory, in this process, and the same
// queries prepared. Ends the program when SQLite refuses.
class LineUpDatabase {
public:
    explicit LineUpDatabase(const LineUp& lineUp);
    ~LineUpDatabase();
    LineUpDatabase(const LineUpDatabase&) = delete;
    LineUpDatabase& operator=(const LineUpDatabase&) = delete;

    // The first service with that major number; 0 when there is none.
    std::uint64_t FindByMajor(int major);
    // The ids of the air line-up's services, streamed ones left out, into a new vector.
    std::vector<std::uint64_t> List();
    // Units of the title of a service's programme at that second of the day; 0 when there is none.
    int FindTitleSize(std::uint64_t service, int second);

private:
    struct Queries;
    std::unique_ptr<Queries> m_queries;
};

} // namespace bench
