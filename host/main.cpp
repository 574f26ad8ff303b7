#include "CommandLine.h"
#include "Session.h"
#include "StandardDescriptors.h"

// NOLINTNEXTLINE(bugprone-exception-escape): one that nothing can be done about ends the program.
int main(int argc, char** argv) {
    host::PrepareStandardDescriptors();

    host::TSCommandLine commandLine;
    if (const std::optional<int> status = host::ReadCommandLine(argc, argv, commandLine)) {
        return *status;
    }

    host::TCSession session(commandLine);
    return session.Run();
}
