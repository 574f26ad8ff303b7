#pragma once

#include <functional>
#include <string>

// Records the plug-in's calls of the core library by intercepting them. On the time line:
//
//     _TCApiAssert(m_data, path, 72, null)
//     TCApiPrintMessage(the text as formatted)
//     TCDebugMenuUtility::OpenLibrary(path, entry)
//
// The number test, the remote call and the size of a node are passed on to the library and not recorded.
namespace CoreWatch {

// Words that the number test accepts in addition to those of the library.
void AcceptAsNumber(const std::string& word);
// What OpenLibrary does and returns; by default it returns true.
void SetOpenLibrary(std::function<bool()> open);
// Called by _TCApiAssert after it has been recorded; may throw.
void OnAssert(std::function<void()> handler);
// From now on every remote call reports failure after it was made; the values of its reply stay.
void FailRuns();
// From now on a branch answers 0 for its size, as it does on devices that keep no size with it.
void HideSizesOfBranches();
// Forgets all of these.
void Reset();

} // namespace CoreWatch
