#include "DebugPrintControlProxy.h"

#include <iostream>
#include <new>

#include <norvex/client/NorvexAPIConnection.h>
#include <norvex/core/Assert.h>
#include <norvex/core/MarshallingHelperProxy.h>
#include <norvex/core/NodeCreator.h>

#include "MarshalableOneDimensionContainer.h"
#include "MarshalableString.h"

namespace {

using MarshalableItems = TCMarshalableOneDimensionContainer<std::vector<TSMenuItem>, TSMenuItem>;

// The result of an operation when the process sent no answer.
constexpr int kNoAnswer = -1;

} // namespace

TCDebugPrintControlProxy::TCDebugPrintControlProxy(const std::string& interfaceName)
    : m_InterfaceName(interfaceName), m_pNorvexConnection(new (std::nothrow) NorvexAPIConnection(
                                          "com.holvi.Norvex.SignalIFace", "/com/holvi/Norvex/SignalObject", true)) {
    if (m_pNorvexConnection == nullptr) {
        _TCApiAssert("m_pNorvexConnection", "src/debugutil/DebugPrintControlProxy", 20, nullptr);
        std::cout << "ASSERT!!! - function TCDebugPrintControlProxy, line 20";
    }
}

TCDebugPrintControlProxy::~TCDebugPrintControlProxy() {
    delete m_pNorvexConnection;
    m_pNorvexConnection = nullptr;
}

int TCDebugPrintControlProxy::Start(std::string& screen) {
    TCMarshallingHelperProxy helper;
    int status = kNoAnswer;
    helper.PushValue(MARSHALLING_OUT, sizeof(status), &status);
    TCMarshalableString screenText(&screen);
    helper.PushMarshalableClass(MARSHALLING_OUT, &screenText);
    return helper.Run(m_pNorvexConnection, m_InterfaceName, "Start", 0, false) ? status : kNoAnswer;
}

int TCDebugPrintControlProxy::Execute(const std::string& command, std::string& screen) {
    TCMarshallingHelperProxy helper;
    int status = kNoAnswer;
    helper.PushValue(MARSHALLING_OUT, sizeof(status), &status);
    TCMarshalableString commandText(const_cast<std::string*>(&command));
    helper.PushMarshalableClass(MARSHALLING_IN, &commandText);
    TCMarshalableString screenText(&screen);
    helper.PushMarshalableClass(MARSHALLING_OUT, &screenText);
    return helper.Run(m_pNorvexConnection, m_InterfaceName, "Execute", 1, false) ? status : kNoAnswer;
}

int TCDebugPrintControlProxy::Check(int& value) {
    TCMarshallingHelperProxy helper;
    int status = kNoAnswer;
    helper.PushValue(MARSHALLING_OUT, sizeof(status), &status);
    helper.PushValue(MARSHALLING_OUT, sizeof(value), &value);
    return helper.Run(m_pNorvexConnection, m_InterfaceName, "Check", 3, false) ? status : kNoAnswer;
}

std::vector<TSMenuItem> TCDebugPrintControlProxy::GetMenuItems() {
    std::vector<TSMenuItem> items;
    TCMarshallingHelperProxy helper;
    int status = kNoAnswer;
    helper.PushValue(MARSHALLING_OUT, sizeof(status), &status);
    MarshalableItems itemList(&items, new TCMarshalableNodeCreator, false);
    helper.PushMarshalableClass(MARSHALLING_OUT, &itemList);
    // Neither outcome nor status counts here: the items that arrived are the answer.
    helper.Run(m_pNorvexConnection, m_InterfaceName, "GetMenuItems", 4, false);
    return items;
}

// The setters return whether the exchange worked; the process's status is read and dropped.

bool TCDebugPrintControlProxy::SetMenuItems(const std::vector<TSMenuItem>& items) {
    TCMarshallingHelperProxy helper;
    int status = kNoAnswer;
    helper.PushValue(MARSHALLING_OUT, sizeof(status), &status);
    MarshalableItems itemList(const_cast<std::vector<TSMenuItem>*>(&items), new TCMarshalableNodeCreator, false);
    helper.PushMarshalableClass(MARSHALLING_IN, &itemList);
    return helper.Run(m_pNorvexConnection, m_InterfaceName, "SetMenuItems", 5, false);
}

bool TCDebugPrintControlProxy::SetMenuItem(const TSMenuItem& item) {
    TCMarshallingHelperProxy helper;
    int status = kNoAnswer;
    helper.PushValue(MARSHALLING_OUT, sizeof(status), &status);
    helper.PushMarshalableClass(MARSHALLING_IN, const_cast<TSMenuItem*>(&item));
    return helper.Run(m_pNorvexConnection, m_InterfaceName, "SetMenuItem", 6, false);
}

bool TCDebugPrintControlProxy::SetQoSEnabled(bool enable) {
    TCMarshallingHelperProxy helper;
    int status = kNoAnswer;
    helper.PushValue(MARSHALLING_OUT, sizeof(status), &status);
    helper.PushValue(MARSHALLING_IN, sizeof(enable), &enable);
    return helper.Run(m_pNorvexConnection, m_InterfaceName, "SetQoSEnabled", 7, false);
}

// The queries read the answer as a byte, so that a malformed one is still true or false, and ignore
// the outcome of the exchange.

bool TCDebugPrintControlProxy::IsQoSEnabled() {
    TCMarshallingHelperProxy helper;
    unsigned char answer = 0;
    helper.PushValue(MARSHALLING_OUT, sizeof(answer), &answer);
    helper.Run(m_pNorvexConnection, m_InterfaceName, "IsQoSEnabled", 8, false);
    return answer != 0;
}

bool TCDebugPrintControlProxy::SetDebugMode(EDebugMode mode, bool enable) {
    TCMarshallingHelperProxy helper;
    int status = kNoAnswer;
    helper.PushValue(MARSHALLING_OUT, sizeof(status), &status);
    helper.PushValue(MARSHALLING_IN, sizeof(mode), &mode);
    helper.PushValue(MARSHALLING_IN, sizeof(enable), &enable);
    return helper.Run(m_pNorvexConnection, m_InterfaceName, "SetDebugMode", 9, false);
}

bool TCDebugPrintControlProxy::IsDebugModeEnabled(EDebugMode mode) {
    TCMarshallingHelperProxy helper;
    unsigned char answer = 0;
    helper.PushValue(MARSHALLING_OUT, sizeof(answer), &answer);
    helper.PushValue(MARSHALLING_IN, sizeof(mode), &mode);
    helper.Run(m_pNorvexConnection, m_InterfaceName, "IsDebugModeEnabled", 10, false);
    return answer != 0;
}

// Method ID 2, although it stands last in the interface.
int TCDebugPrintControlProxy::Stop() {
    TCMarshallingHelperProxy helper;
    int status = kNoAnswer;
    helper.PushValue(MARSHALLING_OUT, sizeof(status), &status);
    return helper.Run(m_pNorvexConnection, m_InterfaceName, "Stop", 2, false) ? status : kNoAnswer;
}
