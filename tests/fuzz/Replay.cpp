// Runs a target over the files of a folder, without the fuzzer: what the tests do with the corpus.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int count, char** words) {
    if (count != 2) {
        std::cerr << "usage: " << words[0] << " FOLDER" << std::endl;
        return 2;
    }
    std::error_code error;
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(words[1], error))
        files.push_back(entry.path());
    if (error || files.empty()) {
        std::cerr << words[1] << ": " << (error ? error.message() : "is empty") << std::endl;
        return 1;
    }
    std::sort(files.begin(), files.end());
    for (const auto& path : files) {
        // Told first, so that it is known which one has ended the program; standard output may be
        // the target's.
        std::cerr << path.string() << std::endl;
        std::ifstream file(path, std::ios::binary);
        const std::string content((std::istreambuf_iterator<char>(file)), {});
        if (!file) {
            std::cerr << path.string() << ": cannot be read" << std::endl;
            return 1;
        }
        // A copy of exactly that size: reading behind it is seen.
        const std::vector<std::uint8_t> bytes(content.begin(), content.end());
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    std::cerr << files.size() << " inputs" << std::endl;
    return 0;
}
