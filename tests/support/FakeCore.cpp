#include "FakeCore.h"

#include <cstdarg>
#include <cstdio>
#include <deque>
#include <map>
#include <set>

#include <norvex/core/Assert.h>
#include <norvex/core/DebugMenuUtility.h>
#include <norvex/core/Marshalable.h>
#include <norvex/core/PrintMessage.h>

#include "FakeScript.h"
#include "Timeline.h"

namespace {

struct Script {
    std::map<std::string, std::deque<FakeCore::Reply>> replies;
    std::set<std::string> numbers;
    std::function<bool()> open;
    std::function<void()> asserted;
};

// Reached before main and after it.
Script& script() {
    static Script* theScript = new Script;
    return *theScript;
}

} // namespace

FakeCore::Reply::Reply() : m_result(true) {}

FakeCore::Reply& FakeCore::Reply::add(Fill fill) {
    m_answers.push_back(std::move(fill));
    return *this;
}

FakeCore::Reply& FakeCore::Reply::text(const std::string& text) {
    return add([text](FakeBranch& root) { root.becomeText(text); });
}

FakeCore::Reply& FakeCore::Reply::items(const std::vector<Item>& items) {
    return add([items](FakeBranch& root) {
        for (const Item& item : items)
            root.item(item.name, item.state, item.id);
    });
}

FakeCore::Reply& FakeCore::Reply::branch(Fill fill) {
    return add(std::move(fill));
}

FakeCore::Reply& FakeCore::Reply::nothing() {
    return add(nullptr);
}

FakeCore::Reply& FakeCore::Reply::failed() {
    m_result = false;
    return *this;
}

const std::vector<FakeCore::Reply::Fill>& FakeCore::Reply::answers() const {
    return m_answers;
}

bool FakeCore::Reply::result() const {
    return m_result;
}

void FakeCore::answer(const std::string& method, const Reply& reply) {
    script().replies[method].push_back(reply);
}

void FakeCore::reset() {
    script() = Script{};
}

void FakeCore::acceptAsNumber(const std::string& word) {
    script().numbers.insert(word);
}

void FakeCore::setOpenLibrary(std::function<bool()> open) {
    script().open = std::move(open);
}

void FakeCore::onAssert(std::function<void()> handler) {
    script().asserted = std::move(handler);
}

FakeCore::Reply FakeScript::next(const std::string& method) {
    const auto found = script().replies.find(method);
    if (found == script().replies.end())
        return FakeCore::Reply().failed();
    FakeCore::Reply reply = found->second.front();
    if (found->second.size() > 1)
        found->second.pop_front();
    return reply;
}

// The library's own functions.

void _TCApiAssert(const char* expression, const char* file, int line, const char* message) {
    Timeline::now().call(std::string("_TCApiAssert(") + expression + ", " + file + ", " +
                         std::to_string(line) + ", " + (message == nullptr ? "null" : message) +
                         ")");
    if (script().asserted)
        script().asserted();
}

// NOLINTNEXTLINE(cert-dcl50-cpp): so it is declared.
void TCApiPrintMessage(const char* format, ...) {
    char text[1024];
    va_list arguments;
    va_start(arguments, format);
    if (std::vsnprintf(text, sizeof text, format, arguments) < 0)
        text[0] = '\0';
    va_end(arguments);
    Timeline::now().call(std::string("TCApiPrintMessage(") + text + ")");
}

bool TCDebugMenuUtility::IsNumber(const std::string& text) {
    if (script().numbers.contains(text))
        return true;
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

bool TCDebugMenuUtility::OpenLibrary(const char* path, const char* entry) {
    Timeline::now().call(std::string("TCDebugMenuUtility::OpenLibrary(") + path + ", " + entry +
                         ")");
    return script().open ? script().open() : true;
}

TIMarshalable::~TIMarshalable() = default;

TCMarshalable::TCMarshalable() : m_pState(nullptr) {}
TCMarshalable::TCMarshalable(const TCMarshalable&) : m_pState(nullptr) {}
TCMarshalable& TCMarshalable::operator=(const TCMarshalable&) = default;
TCMarshalable::~TCMarshalable() = default;

bool TCMarshalable::GetSizeOfMarshalled(unsigned long&) {
    return false;
}

bool TCMarshalable::ClassToTree(TCTreeBranch&) {
    return true;
}

bool TCMarshalable::TreeToClass(TCTreeBranch&) {
    return true;
}

int TCMarshalable::GetMarshalableStorageType() {
    return 0;
}

bool TCMarshalable::Store(TCMessageBuffer*) {
    Timeline::now().call("TCMarshalable::Store");
    return false;
}

bool TCMarshalable::Load(TCMessageBuffer*) {
    Timeline::now().call("TCMarshalable::Load");
    return false;
}
