#pragma once

#include <wire/Buffer.h>
#include <wire/Tree.h>

class TIMarshalable;

// Converts whole objects to and from branches.

// Writes `object` as a branch at the end of `buffer`. `depth` is the number of enclosing branches.
// False if the object could not be written completely or is nested too deep; the buffer is then
// unchanged.
bool WriteObject(TIMarshalable& object, int tag, wire::Direction direction, int depth, wire::Buffer& buffer);

// Reads `object` from `node`, a view of well-formed bytes. False when it could not be read.
//
// An object with a size (TIMarshalable::GetSizeOfMarshalled) is only passed a branch with the
// encoding of a text, whose length matches its bytes, or an empty one: such a reader asks for the
// length and allocates that much memory before it sees the bytes, so the length must have been
// checked by then.
bool ReadObject(const wire::Node& node, TIMarshalable& object);
