#pragma once

#include <norvex/core/Export.h>

class TCTreeBranch;
class TILengthInfoContainer;
class TIMarshalable;

// Moves fields between an object and a branch, each under a tag. What is written and what is read
// is listed in the same order by the same calls; the two formatters give them their direction.
//
// Every push answers whether it worked; a failed one is remembered for `Extract` or `FillOut`.
class NORVEX_API TCTreeFormatter {
public:
    TCTreeFormatter();
    virtual ~TCTreeFormatter();
    TCTreeFormatter(const TCTreeFormatter&) = delete;
    TCTreeFormatter& operator=(const TCTreeFormatter&) = delete;

    // A plain value of `size` bytes at `data`.
    virtual bool PushValue(short tag, int size, void* data) = 0;
    // `count` elements of `elementSize` bytes each at `data`.
    virtual bool PushArray(short tag, int count, int elementSize, void* data) = 0;
    // `count` bytes at `data`; `info`, when not null, is told or asked the length.
    virtual bool PushLengthArray(short tag, int count, void* data, TILengthInfoContainer* info) = 0;
    // A marshalable object, as a branch of its own.
    virtual bool PushMarshalableClass(short tag, TIMarshalable* object) = 0;

    // Ends writing: true when every push worked.
    virtual bool Extract();
    // Ends reading: true when every push worked.
    virtual bool FillOut();
};
