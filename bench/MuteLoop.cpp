// The minimum work of a round through a menu with two prompts: reads words through std::cin,
// converts each with a string stream, and writes its two arguments in turn: a menu with the first
// prompt, flushed after the menu and after the prompt, and the second prompt, flushed.

#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

int main(int argc, char** argv) {
    if (argc != 3)
        return 2;
    const std::string first = argv[1];
    const std::size_t prompt = first.rfind('\n');
    const std::string menu = first.substr(0, prompt);
    const std::string command = first.substr(prompt + 1);
    const std::string value = argv[2];

    // std::cin is block-buffered, as in the host.
    std::filebuf input;
    if (input.open("/dev/stdin", std::ios::in) == nullptr)
        return 1;
    std::cin.rdbuf(&input);

    bool commandNext = true;
    std::string word;
    while (true) {
        if (commandNext) {
            std::cout << menu << std::endl;
            std::cout << command << std::flush;
        } else {
            std::cout << value << std::flush;
        }
        if (!(std::cin >> word))
            break;
        std::stringstream stream(word);
        int number = 0;
        stream >> number;
        commandNext = !commandNext || stream.fail();
    }
    std::cin.rdbuf(nullptr);
    return 0;
}
