#pragma once

#include <norvex/core/Export.h>

// Where the writer of a length array may put, and the reader find, how long it is. Optional: null
// where the length travels in a child of its own.
class NORVEX_API TILengthInfoContainer {
public:
    virtual ~TILengthInfoContainer();
    virtual void SetLength(int count) = 0;
    virtual int GetLength() const = 0;
};
