#pragma once

#include <functional>
#include <string>

// What the plug-in asks of the core library: these stand in front of the library's own. On the time
// line:
//
//     _TCApiAssert(m_data, path, 72, null)
//     TCApiPrintMessage(the text as formatted)
//     TCDebugMenuUtility::OpenLibrary(path, entry)
//
// The number test and the remote call are handed on to the library and not noted.
namespace CoreWatch {

// Words that the number test accepts beside those that the library accepts.
void AcceptAsNumber(const std::string& word);
// What OpenLibrary does and answers; without it, it answers true.
void SetOpenLibrary(std::function<bool()> open);
// Called by _TCApiAssert after it has been recorded; may throw.
void OnAssert(std::function<void()> handler);
// From now on every remote call answers a failure after it was made; what its reply wrote stands.
void FailRuns();
// Forgets all of these.
void Reset();

} // namespace CoreWatch
