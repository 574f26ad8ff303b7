#pragma once

#include <norvex/core/Export.h>

class TCTreeBranch;
class TILengthInfoContainer;
class TIMarshalable;

// Moves fields between an object and a branch, each under a tag. Writing and reading list the
// fields in the same order with the same calls; the two subclasses give the direction.
//
// Every push returns whether it worked; `Extract` and `FillOut` remember a failed one.
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
    // `count` bytes at `data`; `info`, when not null, stores or supplies the length.
    virtual bool PushLengthArray(short tag, int count, void* data, TILengthInfoContainer* info) = 0;
    // A marshalable object, as a branch of its own.
    virtual bool PushMarshalableClass(short tag, TIMarshalable* object) = 0;

    // Ends writing: true when every push worked.
    virtual bool Extract();
    // Ends reading: true when every push worked.
    virtual bool FillOut();
};
