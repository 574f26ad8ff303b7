#pragma once

// The pipeline test console without its tests: on the time line stand "TCDebugMenuTPMS" where one
// is constructed and "TCDebugMenuTPMS::Enter" where it is entered.
namespace FakeTPMS {

// The object that was entered last; null when none was.
const void* lastEntered();

} // namespace FakeTPMS
