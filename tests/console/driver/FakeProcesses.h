#pragma once

#include <vector>

#include <sys/types.h>

// Child processes without a viewer. vfork makes a real child, which runs the console's code until
// it starts a program or ends; what it did meanwhile is on the time line, in brackets, before its
// parent goes on:
//
//     {vfork}{child: execl(/usr/bin/dlogutil; dlogutil, tvvideodec)}
//
// A started program ends at once with status 0.
namespace FakeProcesses {

// Back to a machine that has every program.
void Reset();
// No program can be started any more.
void RemovePrograms();
// vfork fails from now on.
void Exhaust();

// Process IDs that vfork returned to the parent since the last reset.
const std::vector<pid_t>& GetChildren();
// Waits for a child's end. Its exit status; -1 when it did not end by itself or somebody else has
// waited for it.
int WaitForExitStatus(pid_t child);

} // namespace FakeProcesses
