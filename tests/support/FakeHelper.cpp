#include <cstring>
#include <cxxabi.h>
#include <string>
#include <typeinfo>
#include <vector>

#include <norvex/core/Marshalable.h>
#include <norvex/core/MarshallingHelperProxy.h>

#include "FakeCore.h"
#include "FakeScript.h"
#include "FakeTreeNodes.h"
#include "Timeline.h"

namespace {

struct Argument {
    EMarshallingDirection direction;
    int size;
    void* data;
    TIMarshalable* object;
};

int alive = 0;

using Arguments = std::vector<Argument>;

Arguments& argumentsOf(void* pointer) {
    return *static_cast<Arguments*>(pointer);
}

// Class name without template arguments.
std::string className(TIMarshalable& object) {
    int status = 0;
    char* text = abi::__cxa_demangle(typeid(object).name(), nullptr, nullptr, &status);
    const std::string name = text == nullptr ? "?" : text;
    std::free(text);
    return name.substr(0, name.find('<'));
}

std::string describe(const Argument& argument) {
    const std::string direction = argument.direction == MARSHALLING_OUT  ? "out "
                                  : argument.direction == MARSHALLING_IN ? "in "
                                                                         : "? ";
    if (argument.object == nullptr) {
        const FakeLeaf leaf(FakeNodeState::Kind::Var, 0, 1, argument.data,
                            static_cast<std::size_t>(argument.size));
        return direction + "value " + std::to_string(argument.size) + " = " +
               FakeTree::describe(leaf).substr(4);
    }
    if (argument.direction == MARSHALLING_OUT)
        return direction + className(*argument.object);
    FakeBranch branch;
    const bool written = argument.object->ClassToTree(branch);
    return direction + className(*argument.object) + " " + FakeTree::describe(branch) +
           (written ? "" : " refused");
}

void write(const Argument& argument, const FakeCore::Reply::Fill& answer) {
    FakeBranch root;
    answer(root);
    if (argument.object != nullptr)
        argument.object->TreeToClass(root);
    else
        root.GetFirstChild()->CopyTo(argument.data, argument.size);
}

} // namespace

int FakeCore::helpersAlive() {
    return alive;
}

TCMarshallingHelper::TCMarshallingHelper() : m_pState(new Arguments) {
    ++alive;
}

TCMarshallingHelper::~TCMarshallingHelper() {
    --alive;
    delete &argumentsOf(m_pState);
}

void TCMarshallingHelper::PushValue(EMarshallingDirection direction, int size, void* data) {
    argumentsOf(m_pState).push_back({direction, size, data, nullptr});
}

void TCMarshallingHelper::PushMarshalableClass(EMarshallingDirection direction,
                                               TIMarshalable* object) {
    argumentsOf(m_pState).push_back({direction, 0, nullptr, object});
}

TCMarshallingHelperProxy::TCMarshallingHelperProxy() = default;
TCMarshallingHelperProxy::~TCMarshallingHelperProxy() = default;

bool TCMarshallingHelperProxy::Run(NorvexAPIConnection* connection, std::string& interfaceName,
                                   const std::string& method, short methodId, bool flag) {
    std::string text = std::string("Run(") + (connection == nullptr ? "null" : "connection") +
                       ", " + interfaceName + ", " + method + ", " + std::to_string(methodId) +
                       ", " + (flag ? "true" : "false");
    for (const Argument& argument : argumentsOf(m_pState))
        text += "; " + describe(argument);
    Timeline::now().call(text + ")");

    const FakeCore::Reply reply = FakeScript::next(method);
    std::size_t answered = 0;
    for (const Argument& argument : argumentsOf(m_pState)) {
        if (argument.direction != MARSHALLING_OUT)
            continue;
        if (answered < reply.answers().size() && reply.answers()[answered])
            write(argument, reply.answers()[answered]);
        ++answered;
    }
    return reply.result();
}
