#pragma once

#include <wire/Buffer.h>
#include <wire/Tree.h>

class TIMarshalable;

// Moves whole objects to and from branches.

// Writes `object` as a branch at the end of `buffer`. `depth` counts the branches around it. False
// when the object could not be written whole or lies too deep; the buffer is then as it was.
bool WriteObject(TIMarshalable& object, int tag, wire::Direction direction, int depth,
                 wire::Buffer& buffer);

// Reads `object` from `node`, a view of well-formed bytes. False when it could not be read.
//
// An object that is known by its length (TIMarshalable::GetSizeOfMarshalled) is only shown a branch
// in the form of a text, length and bytes that agree, or an empty one: such a reader asks for the
// length and takes that much memory before it sees the bytes, so the length has to be true by then.
bool ReadObject(const wire::Node& node, TIMarshalable& object);
