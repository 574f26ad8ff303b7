#include "FakeConnection.h"

#include <unistd.h>

#include <norvex/client/NorvexAPIConnection.h>

#include "Timeline.h"

namespace {

int connections = 0;
bool telling = false;

} // namespace

int FakeConnection::alive() {
    return connections;
}

void FakeConnection::tellEnd(bool tell) {
    telling = tell;
}

// cppcheck-suppress passedByValue ; so the constructor is declared.
NorvexAPIConnection::NorvexAPIConnection(std::string interfaceName, std::string objectPath,
                                         bool flag)
    : m_pState(nullptr) {
    static_cast<void>(m_pState);
    ++connections;
    Timeline::now().call("NorvexAPIConnection(" + interfaceName + ", " + objectPath + ", " +
                         (flag ? "true" : "false") + ")");
}

NorvexAPIConnection::~NorvexAPIConnection() {
    --connections;
    Timeline::now().call("~NorvexAPIConnection");
    // Not by way of the streams: they may be gone.
    static const char line[] = "connection closed\n";
    if (telling && write(STDERR_FILENO, line, sizeof line - 1) < 0)
        telling = false;
}

bool NorvexAPIConnection::Exchange(const std::string& interfaceName, const std::string& method,
                                   short, bool, const TCMessageBuffer&, TCMessageBuffer&) {
    Timeline::now().call("NorvexAPIConnection::Exchange(" + interfaceName + ", " + method + ")");
    return false;
}
