// Loads one library and prints the nanoseconds that it took. A C++ program: the standard library is
// already loaded, as in the host.

#include <chrono>
#include <iostream>

#include <dlfcn.h>

int main(int argc, char** argv) {
    if (argc != 2)
        return 2;
    const auto begin = std::chrono::steady_clock::now();
    void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    const auto end = std::chrono::steady_clock::now();
    if (library == nullptr) {
        std::cerr << dlerror() << std::endl;
        return 1;
    }
    std::cout << std::chrono::nanoseconds(end - begin).count() << std::endl;
    return 0;
}
