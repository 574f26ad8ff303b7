#pragma once

namespace host {

// To be called first in main, before anything is opened. Afterwards descriptors 0 to 2 are open
// (what was closed reads as empty and swallows what is written, so that no file opened later ends
// up in its place), a child process of the plug-in inherits these three and no other, and a reader
// of standard output that goes away ends the process.
void PrepareStandardDescriptors();

} // namespace host
