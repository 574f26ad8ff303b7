// A reply's tree, read into arguments of each kind by the marshalling helper. A length
// is checked before a reader relies on it: what is read never exceeds what came.

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <norvex/core/MarshallingHelperProxy.h>
#include <wire/Tree.h>

#include "EchoConnection.h"
#include "TestTypes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    EchoConnection connection;
    connection.reply.assign(data, data + size);
    int status = -1;
    std::string text;
    std::vector<Group> groups;
    Mixed mixed;
    TestText textArgument(text);
    TestVector<Group> groupsArgument(groups);
    TCMarshallingHelperProxy helper;
    helper.PushValue(MARSHALLING_OUT, sizeof status, &status);
    helper.PushMarshalableClass(MARSHALLING_OUT, &textArgument);
    helper.PushMarshalableClass(MARSHALLING_OUT, &groupsArgument);
    helper.PushMarshalableClass(MARSHALLING_OUT, &mixed);
    std::string interfaceName = "fuzz";
    const bool wasRead = helper.Run(&connection, interfaceName, "Reply", 0, false);
    if (text.size() > size || mixed.name.size() > size || groups.size() > size / wire::kNodeHeaderSize)
        std::abort();
    // A tree with a bad node anywhere is not used at all.
    if (!wire::IsWellFormed(data, size) && (wasRead || status != -1 || !text.empty()))
        std::abort();
    return 0;
}
