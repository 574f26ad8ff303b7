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

void writeSession(const std::string& folder, const std::string& words) {
    write(folder + "/session", words);
}

std::string readSession(const std::string& folder) {
    std::ifstream in(folder + "/session", std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

} // namespace walk
