#include "Progress.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace walk {

namespace {

void write(const std::string& path, const std::string& text) {
    std::ofstream(path + ".new", std::ios::binary) << text;
    std::filesystem::rename(path + ".new", path);
}

} // namespace

void writeProgress(const std::string& folder, const Progress& progress) {
    write(folder + "/progress", std::to_string(progress.words) + " " +
                                    std::to_string(progress.seed) + "\n" + progress.rows);
}

Progress readProgress(const std::string& folder) {
    Progress progress;
    std::ifstream in(folder + "/progress", std::ios::binary);
    in >> progress.words >> progress.seed >> std::ws;
    progress.rows.assign(std::istreambuf_iterator<char>(in), {});
    return progress;
}

void writeSession(const std::string& folder, std::uint64_t seed, const std::string& words) {
    write(folder + "/session-" + std::to_string(seed), words);
}

std::map<std::uint64_t, std::string> readSessions(const std::string& folder) {
    std::map<std::uint64_t, std::string> sessions;
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
        const std::string name = file.path().filename();
        if (!name.starts_with("session-") || name.ends_with(".new"))
            continue;
        std::ifstream in(file.path(), std::ios::binary);
        sessions[std::stoull(name.substr(8))].assign(std::istreambuf_iterator<char>(in), {});
    }
    return sessions;
}

void forgetSessions(const std::string& folder) {
    for (const auto& [seed, words] : readSessions(folder))
        std::filesystem::remove(folder + "/session-" + std::to_string(seed));
}

} // namespace walk
