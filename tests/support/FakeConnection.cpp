#include "FakeConnection.h"

#include <deque>
#include <map>

#include <unistd.h>

#include <norvex/client/NorvexAPIConnection.h>
#include <norvex/core/MessageBuffer.h>
#include <wire/Tree.h>

#include "Timeline.h"

using FakeConnection::Reply;

namespace {

int connections = 0;
bool tellsEnd = false;

std::map<std::string, std::deque<Reply>> script;

} // namespace

Reply& Reply::Add(WriteValue value) {
    m_values.push_back(std::move(value));
    return *this;
}

Reply& Reply::Text(const std::string& text) {
    return Add([text](Tree& tree, int tag) { tree.Text(tag, text); });
}

Reply& Reply::Items(const std::vector<Item>& items) {
    Tree list;
    int place = 0;
    for (const Item& item : items)
        list.Branch(place++, Tree::OfItem(item.name, item.state, item.id));
    return Add([list](Tree& tree, int tag) { tree.Branch(tag, list); });
}

Reply& Reply::Nothing() {
    return Add([](Tree&, int) {});
}

Reply& Reply::Failed() {
    m_failed = true;
    return *this;
}

void FakeConnection::Answer(const std::string& method, const Reply& reply) {
    script[method].push_back(reply);
}

void FakeConnection::Reset() {
    script.clear();
}

int FakeConnection::CountAlive() {
    return connections;
}

void FakeConnection::TellEnd() {
    tellsEnd = true;
}

// cppcheck-suppress passedByValue ; so the constructor is declared.
NorvexAPIConnection::NorvexAPIConnection(std::string interfaceName, std::string objectPath, bool flag)
    : m_pState(nullptr) {
    static_cast<void>(m_pState);
    ++connections;
    Timeline::Now().Call("NorvexAPIConnection(" + interfaceName + ", " + objectPath + ", " + (flag ? "true" : "false") +
                         ")");
}

NorvexAPIConnection::~NorvexAPIConnection() {
    --connections;
    Timeline::Now().Call("~NorvexAPIConnection");
    // Not by way of the streams: they may be gone.
    static const char line[] = "connection closed\n";
    if (tellsEnd && write(STDERR_FILENO, line, sizeof line - 1) < 0)
        tellsEnd = false;
}

bool NorvexAPIConnection::Exchange(const std::string& interfaceName, const std::string& method, short methodId,
                                   bool flag, const TCMessageBuffer& arguments, TCMessageBuffer& reply) {
    Timeline::Now().Call("Exchange(" + interfaceName + ", " + method + ", " + std::to_string(methodId) + ", " +
                         (flag ? "true" : "false") + "; " + Describe(arguments.GetData(), arguments.GetSize(), true) +
                         ")");
    std::deque<Reply>& replies = script[method];
    if (replies.empty())
        return false;
    const Reply next = replies.front();
    if (replies.size() > 1)
        replies.pop_front();
    if (next.HasFailed())
        return false;

    Tree tree;
    auto value = next.GetValues().begin();
    wire::NodeCursor cursor(arguments.GetData(), arguments.GetSize());
    for (wire::Node node; cursor.Next(node);) {
        if (node.direction == wire::Direction::Out && value != next.GetValues().end())
            (*value++)(tree, node.tag);
    }
    reply.Append(tree.GetBytes().data(), tree.GetBytes().size());
    return true;
}
