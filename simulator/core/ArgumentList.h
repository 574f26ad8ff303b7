#pragma once

#include <memory>
#include <vector>

#include <norvex/core/MarshallingHelper.h>
#include <norvex/core/MessageBuffer.h>
#include <wire/Buffer.h>

class TIMarshalable;

// The arguments of one call as they were registered, and the memory for its two trees.
class ArgumentList {
public:
    struct Argument {
        EMarshallingDirection direction;
        int size;              // of a plain value
        void* data;            // of a plain value
        TIMarshalable* object; // null: a plain value
    };

    void Add(const Argument& argument) { m_arguments.push_back(argument); }
    void Clear();

    // Writes the arguments, in both directions, as the tree of a call. False when one of them could
    // not be written whole or the tree has reached its limit.
    bool Encode();
    // What Encode wrote, and where the reply's tree belongs.
    TCMessageBuffer& GetCall() { return m_call; }
    TCMessageBuffer& GetReply() { return m_reply; }
    // Writes the reply's values into the arguments registered as out, in their order; stops at the
    // first that cannot be read, which makes it false. What the reply does not bring stays as it
    // was.
    bool Decode();

    // A list with the memory of an earlier call of this thread, or a new one. It goes back by
    // GiveBack.
    static std::unique_ptr<ArgumentList> Take();
    static void GiveBack(std::unique_ptr<ArgumentList> list);

private:
    bool Encode(const Argument& argument, int place);

    std::vector<Argument> m_arguments;
    wire::Buffer m_scratch;
    TCMessageBuffer m_call;
    TCMessageBuffer m_reply;
};
