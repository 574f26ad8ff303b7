// How fast the process menu reads words: an unknown number, repeated.

#include <string>

#include "Figure.h"
#include "Program.h"
#include "Rounds.h"

namespace {

constexpr int kWords = 100000;

std::string Repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

double WordsEachSecond(const std::vector<std::string>& program, const std::string& input) {
    return kWords / bench::RunPiped(program, input).seconds;
}

} // namespace

int main() {
    // The console's bytes, recorded from it: its first output, and what each word adds.
    const std::vector<std::string> host = {HOST, PLUGIN};
    const std::size_t enough = 1 << 16;
    const std::string none = bench::RunPiped(host, "", enough).output;
    const std::string one = bench::RunPiped(host, "8\n", enough).output;
    const std::string two = bench::RunPiped(host, "8\n8\n", enough).output;
    if (one.compare(0, none.size(), none) != 0 || two != one + one.substr(none.size()))
        bench::GiveUp("the process menu's answer to a word is not the same each time");
    const std::string answer = one.substr(none.size());

    const std::string input = Repeated("8\n", kWords);
    const std::vector<std::string> loop = {WORD_LOOP, answer};
    if (bench::RunPiped(host, input).outputSize != none.size() + bench::RunPiped(loop, input).outputSize)
        bench::GiveUp("the bare loop does not write as many bytes as the console");

    const std::vector<double> medians =
        bench::MedianOfRounds({{"console", [&] { return WordsEachSecond(host, input); }},
                               {"bare loop", [&] { return WordsEachSecond(loop, input); }}},
                              7);

    bench::Figure figure;
    figure.name = "process_menu_words";
    figure.unit = "words/s";
    figure.value = medians[0];
    figure.peers = {{"bare loop", medians[1]}};
    figure.ratio = medians[0] / medians[1];
    figure.limit = 0.8;
    figure.atLeast = true;
    return bench::PrintFigures({figure}) ? 0 : 1;
}
