#pragma once

#include "FakeNorvexAPI.h"

class TCProgramData;
class TCServiceData;

// How the faked sessions fill the records that the console hands them.
namespace FakeRecords {

// `data` reads as `record` from now on.
void fill(TCServiceData& data, const FakeRecord& record);
// Whether nothing has been read into it yet.
bool isFresh(const TCServiceData& data);
void fill(TCProgramData& data, const FakeNorvexAPI::Program& program);
bool isFresh(const TCProgramData& data);

} // namespace FakeRecords
