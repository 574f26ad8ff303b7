#include "ArgumentList.h"

#include <climits>
#include <utility>

#include <norvex/core/Marshalable.h>
#include <wire/Message.h>
#include <wire/Tree.h>

#include "BranchView.h"
#include "ObjectTree.h"

namespace {

constexpr std::size_t kKeptScratch = 2u << 20;

// Kept by the thread from one call to the next. A plain pointer, so that it can be used even by a
// call that is made while the thread's objects are being destroyed.
thread_local ArgumentList* t_spare = nullptr;
thread_local bool t_isEnding = false;

struct SpareOwner {
    ~SpareOwner() {
        t_isEnding = true;
        delete std::exchange(t_spare, nullptr);
    }
};

} // namespace

std::unique_ptr<ArgumentList> ArgumentList::Take() {
    if (t_spare == nullptr)
        return std::make_unique<ArgumentList>();
    return std::unique_ptr<ArgumentList>(std::exchange(t_spare, nullptr));
}

void ArgumentList::GiveBack(std::unique_ptr<ArgumentList> list) {
    if (t_spare != nullptr || t_isEnding)
        return;
    static thread_local SpareOwner owner;
    list->Clear();
    t_spare = list.release();
}

void ArgumentList::Clear() {
    m_arguments.clear();
    m_scratch.ClearAndTrim(kKeptScratch);
    m_call.Clear();
    m_reply.Clear();
}

bool ArgumentList::Encode(const Argument& argument, int place) {
    const auto tag = static_cast<std::int16_t>(place);
    const auto direction = argument.direction == MARSHALLING_IN ? wire::Direction::In : wire::Direction::Out;
    wire::TreeWriter writer(m_scratch);
    if (argument.object == nullptr) {
        if (argument.size < 0 || (argument.data == nullptr && argument.size > 0) ||
            static_cast<std::size_t>(argument.size) > wire::kMaxTreeSize)
            return false;
        writer.PutLeaf(tag, wire::NodeKind::Value, argument.data, static_cast<std::size_t>(argument.size), direction);
        return true;
    }
    unsigned long length = 0;
    if (direction == wire::Direction::Out && argument.object->GetSizeOfMarshalled(length)) {
        const auto announced = static_cast<std::uint32_t>(length);
        writer.PutLeaf(tag, wire::NodeKind::Length, &announced, sizeof announced, direction);
        return true;
    }
    return WriteObject(*argument.object, tag, direction, 0, m_scratch);
}

bool ArgumentList::Encode() {
    m_scratch.Clear();
    if (m_arguments.size() > INT16_MAX)
        return false;
    int place = 0;
    for (const Argument& argument : m_arguments) {
        if (!Encode(argument, place++))
            return false;
    }
    m_call.Clear();
    m_call.Append(m_scratch.GetData(), m_scratch.GetSize());
    return m_call.GetSize() <= wire::kMaxTreeSize;
}

bool ArgumentList::Decode() {
    if (m_reply.GetSize() > wire::kMaxTreeSize || !wire::IsWellFormed(m_reply.GetData(), m_reply.GetSize()))
        return false;
    wire::Node tree;
    tree.kind = wire::NodeKind::Branch;
    tree.data = static_cast<const unsigned char*>(m_reply.GetData());
    tree.size = static_cast<std::uint32_t>(m_reply.GetSize());
    BranchState replies;
    replies.Read(tree);
    int place = 0;
    for (const Argument& argument : m_arguments) {
        wire::Node node;
        const int tag = place++;
        if (argument.direction == MARSHALLING_IN || !replies.Find(tag, node))
            continue;
        if (argument.object != nullptr) {
            if (!ReadObject(node, *argument.object))
                return false;
        } else if (node.kind != wire::NodeKind::Value || static_cast<long long>(node.size) != argument.size) {
            return false;
        } else {
            wire::CopyContent(argument.data, node.data, node.size);
        }
    }
    return true;
}
