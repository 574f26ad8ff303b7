// Makes the number of small calls given by its second argument, and writes the first one after
// each, flushed.

#include <cstdlib>
#include <iostream>

#include <norvex/client/NorvexAPI.h>
#include <norvex/client/ServiceNavigation.h>

int main(int argc, char** argv) {
    IServiceNavigation* navigation = nullptr;
    if (argc != 3 || NorvexAPI::CreateServiceNavigation(PROFILE_MAIN, 0, &navigation) != 0)
        return 2;
    TSTvMode mode;
    for (long left = std::strtol(argv[2], nullptr, 10); left > 0; --left) {
        if (navigation->GetTvMode(mode) <= 0)
            return 1;
        std::cout << argv[1] << std::flush;
    }
    NorvexAPI::Destroy(navigation);
    return 0;
}
