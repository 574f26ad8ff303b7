// Writes its first argument the number of times given by the second, flushed each time.

#include <cstdlib>
#include <iostream>

int main(int argc, char** argv) {
    if (argc != 3)
        return 2;
    for (long left = std::strtol(argv[2], nullptr, 10); left > 0; --left)
        std::cout << argv[1] << std::flush;
    return 0;
}
