// Runs a target over the files of a folder and over damaged copies of them, without the fuzzer: what
// the tests do with the corpus.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

constexpr int kDamagedInputs = 1000;

// On a copy of exactly that size: reading beyond it is seen.
void Run(const std::vector<std::uint8_t>& input) {
    const std::vector<std::uint8_t> bytes(input.begin(), input.end());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

// Inputs cut at some byte or with some byte changed, the same ones in each run.
void RunDamaged(const std::vector<std::vector<std::uint8_t>>& inputs) {
    std::minstd_rand random(1);
    for (int number = 1; number <= kDamagedInputs; ++number) {
        std::vector<std::uint8_t> input = inputs[random() % inputs.size()];
        if (input.empty())
            continue;
        const std::size_t place = random() % input.size();
        if (random() % 3 == 0)
            input.resize(place);
        else
            input[place] ^= static_cast<std::uint8_t>(1 + random() % 255);
        std::cerr << "damaged " << number << std::endl;
        Run(input);
    }
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: " << arguments[0] << " FOLDER" << std::endl;
        return 2;
    }
    std::error_code error;
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(arguments[1], error))
        files.push_back(entry.path());
    if (error || files.empty()) {
        std::cerr << arguments[1] << ": " << (error ? error.message() : "is empty") << std::endl;
        return 1;
    }
    std::sort(files.begin(), files.end());
    std::vector<std::vector<std::uint8_t>> inputs;
    for (const auto& path : files) {
        // Printed first, so that it is known which one has ended the program; standard output may
        // be the target's.
        std::cerr << path.string() << std::endl;
        std::ifstream file(path, std::ios::binary);
        const std::string content((std::istreambuf_iterator<char>(file)), {});
        if (!file) {
            std::cerr << path.string() << ": cannot be read" << std::endl;
            return 1;
        }
        Run({content.begin(), content.end()});
        inputs.emplace_back(content.begin(), content.end());
    }
    std::cerr << files.size() << " inputs" << std::endl;
    RunDamaged(inputs);
    return 0;
}
