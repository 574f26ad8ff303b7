#pragma once

#include <memory>
#include <vector>

#include <norvex/core/MarshallingHelper.h>
#include <norvex/core/MessageBuffer.h>
#include <wire/Buffer.h>

class TIMarshalable;

// The registered arguments of one call, and the memory for its two trees.
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

    // Writes the arguments of both directions as the tree of a call. False when one of them could
    // not be written completely or the tree has reached its limit.
    bool Encode();
    // The tree written by Encode, and the buffer for the reply's tree.
    TCMessageBuffer& GetCall() { return m_call; }
    TCMessageBuffer& GetReply() { return m_reply; }
    // Writes the reply's values into the out arguments, in order; stops at the first that cannot be
    // read and returns false. Arguments that are not in the reply stay unchanged.
    bool Decode();

    // A list with the memory of an earlier call of this thread, or a new one. Return it with
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
