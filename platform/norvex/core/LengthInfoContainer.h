#pragma once

#include <norvex/core/Export.h>

// Where the writer of an array stores, and its reader finds, the array's length. Optional: null
// when the length is a child of its own.
class NORVEX_API TILengthInfoContainer {
public:
    virtual ~TILengthInfoContainer();
    virtual void SetLength(int count) = 0;
    virtual int GetLength() const = 0;
};
