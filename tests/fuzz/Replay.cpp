// Runs a target over the files of a folder, without the fuzzer: what the tests do with the corpus.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int count, char** words) {
    if (count != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", words[0]);
        return 2;
    }
    std::error_code error;
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(words[1], error))
        files.push_back(entry.path());
    if (error || files.empty()) {
        std::fprintf(stderr, "%s: %s\n", words[1], error ? error.message().c_str() : "is empty");
        return 1;
    }
    std::sort(files.begin(), files.end());
    for (const auto& path : files) {
        // Told first, so that it is known which one has ended the program; standard output may be
        // the target's.
        std::fprintf(stderr, "%s\n", path.c_str());
        std::ifstream file(path, std::ios::binary);
        const std::string content((std::istreambuf_iterator<char>(file)), {});
        if (!file) {
            std::fprintf(stderr, "%s: cannot be read\n", path.c_str());
            return 1;
        }
        // A copy of exactly that size: reading behind it is seen.
        const std::vector<std::uint8_t> bytes(content.begin(), content.end());
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    std::fprintf(stderr, "%zu inputs\n", files.size());
    return 0;
}
