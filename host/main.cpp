#include "CommandLine.h"
#include "Session.h"
#include "StandardDescriptors.h"

int main(int argc, char** argv) {
    host::PrepareStandardDescriptors();

    host::TSCommandLine commandLine;
    if (const std::optional<int> status = host::ReadCommandLine(argc, argv, commandLine)) {
        return *status;
    }

    host::TCSession session(commandLine);
    return session.Run();
}
