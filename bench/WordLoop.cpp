// The minimum work of a console per word: reads words through std::cin, checks whether they are
// numbers, converts them, and writes its argument, each part flushed: a line, a text that ends in
// an empty line, and a prompt.

#include <cctype>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

int main(int argc, char** argv) {
    if (argc != 2)
        return 2;
    // The argument is one answer of the process menu: a line, the menu, the prompt.
    const std::string answer = argv[1];
    const std::size_t line = answer.find('\n');
    const std::size_t prompt = answer.rfind('\n');
    const std::string first = answer.substr(0, line);
    const std::string menu = answer.substr(line + 1, prompt - line - 1);
    const std::string last = answer.substr(prompt + 1);

    // std::cin is block-buffered, as in the host.
    std::filebuf input;
    if (input.open("/dev/stdin", std::ios::in) == nullptr)
        return 1;
    std::cin.rdbuf(&input);

    std::string word;
    long sum = 0;
    while (std::cin >> word) {
        bool number = !word.empty();
        for (const char letter : word)
            number = number && std::isdigit(static_cast<unsigned char>(letter)) != 0;
        if (number)
            sum += std::strtol(word.c_str(), nullptr, 10);
        std::cout << first << std::endl;
        std::cout << menu << std::endl;
        std::cout << last << std::flush;
    }
    std::cin.rdbuf(nullptr);
    return sum < 0 ? 1 : 0;
}
