#include "CommandLine.h"
#include "ConsoleRun.h"
#include "Process.h"

// NOLINTNEXTLINE(bugprone-exception-escape): one that nobody can handle ends the program.
int main(int argc, char** argv) {
    host::PrepareStandardDescriptors();

    host::CommandLine commandLine;
    if (const auto status = host::ReadCommandLine(argc, argv, commandLine)) {
        return static_cast<int>(*status);
    }

    host::ConsoleRun run(commandLine);
    return static_cast<int>(run.Run());
}
