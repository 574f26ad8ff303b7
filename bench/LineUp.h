#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace bench {

// Majors are spread over the whole range; a service's minor counts the services of its major.
constexpr int kMajors = 65536;

// A line-up of listed services over air with profile 0, as a file for `norvex-sim --lineup`. Owns
// the file.
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

// SQLite alone: the daemon's tables in memory, in this process, with the same prepared queries.
// Ends the program if SQLite fails.
class LineUpDatabase {
public:
    explicit LineUpDatabase(const LineUp& lineUp);
    ~LineUpDatabase();
    LineUpDatabase(const LineUpDatabase&) = delete;
    LineUpDatabase& operator=(const LineUpDatabase&) = delete;

    // The first service with that major number; 0 if there is none.
    std::uint64_t FindByMajor(int major);
    // The ids of the services on air, without streamed ones, in a new vector.
    std::vector<std::uint64_t> List();
    // Units of the title of a service's programme at that second of the day; 0 when there is none.
    int FindTitleSize(std::uint64_t service, int second);

private:
    struct Queries;
    std::unique_ptr<Queries> m_queries;
};

} // namespace bench
