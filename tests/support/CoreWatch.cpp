#include "CoreWatch.h"

#include <cstdarg>
#include <cstdio>
#include <set>

#include <dlfcn.h>

#include <norvex/core/Assert.h>
#include <norvex/core/DebugMenuUtility.h>
#include <norvex/core/MarshallingHelperProxy.h>
#include <norvex/core/PrintMessage.h>
#include <norvex/core/TreeBranch.h>

#include "Timeline.h"

namespace {

struct Script {
    std::set<std::string> numbers;
    std::function<bool()> open;
    std::function<void()> asserted;
    bool failsRuns = false;
    bool hidesSizes = false;
} script;

// The library's own function of that name.
template <typename Function> Function* GetReal(const char* mangledName) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, mangledName));
}

} // namespace

void CoreWatch::AcceptAsNumber(const std::string& word) {
    script.numbers.insert(word);
}

void CoreWatch::SetOpenLibrary(std::function<bool()> open) {
    script.open = std::move(open);
}

void CoreWatch::OnAssert(std::function<void()> handler) {
    script.asserted = std::move(handler);
}

void CoreWatch::FailRuns() {
    script.failsRuns = true;
}

void CoreWatch::HideSizesOfBranches() {
    script.hidesSizes = true;
}

void CoreWatch::Reset() {
    script = Script{};
}

void _TCApiAssert(const char* expression, const char* file, int line, const char* message) {
    Timeline::Now().Call(std::string("_TCApiAssert(") + expression + ", " + file + ", " + std::to_string(line) + ", " +
                         (message == nullptr ? "null" : message) + ")");
    if (script.asserted)
        script.asserted();
}

// NOLINTNEXTLINE(cert-dcl50-cpp): so it is declared.
void TCApiPrintMessage(const char* format, ...) {
    char text[1024];
    va_list arguments;
    va_start(arguments, format);
    if (std::vsnprintf(text, sizeof text, format, arguments) < 0)
        text[0] = '\0';
    va_end(arguments);
    Timeline::Now().Call(std::string("TCApiPrintMessage(") + text + ")");
}

bool TCDebugMenuUtility::OpenLibrary(const char* path, const char* entry) {
    Timeline::Now().Call(std::string("TCDebugMenuUtility::OpenLibrary(") + path + ", " + entry + ")");
    return script.open ? script.open() : true;
}

bool TCDebugMenuUtility::IsNumber(const std::string& text) {
    static auto* const real = GetReal<bool(const std::string&)>(
        "_ZN18TCDebugMenuUtility8IsNumberERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE");
    return script.numbers.contains(text) || real(text);
}

bool TCMarshallingHelperProxy::Run(NorvexAPIConnection* connection, std::string& interfaceName,
                                   const std::string& method, short methodId, bool flag) {
    static auto* const real =
        GetReal<bool(TCMarshallingHelperProxy*, NorvexAPIConnection*, std::string&, const std::string&, short, bool)>(
            "_ZN24TCMarshallingHelperProxy3RunEP19NorvexAPIConnectionRNSt7__cxx1112basic_stringIcSt11"
            "char_traitsIcESaIcEEERKS7_sb");
    return real(this, connection, interfaceName, method, methodId, flag) && !script.failsRuns;
}

int TCTreeNode::GetSize() const {
    static auto* const real = GetReal<int(const TCTreeNode*)>("_ZNK10TCTreeNode7GetSizeEv");
    return script.hidesSizes && dynamic_cast<const TCTreeBranch*>(this) != nullptr ? 0 : real(this);
}
