#pragma once

#include <functional>
#include <string>
#include <vector>

#include <norvex/client/NorvexAPIConnection.h>

// A connection without a peer: keeps the tree of the last call, and replies with bytes chosen by
// the test.
class EchoConnection : public NorvexAPIConnection {
public:
    using Bytes = std::vector<unsigned char>;

    EchoConnection() : NorvexAPIConnection("", "", true) {}

    bool Exchange(const std::string& interfaceName, const std::string& method, short methodId, bool flag,
                  const TCMessageBuffer& arguments, TCMessageBuffer& reply) override;

    // The arguments of Exchange.
    std::string interfaceName;
    std::string method;
    short methodId = -1;
    Bytes call;

    // Makes the reply from the call; without it the reply is `reply`.
    std::function<Bytes(const Bytes&)> answer;
    Bytes reply;
    bool succeeds = true;
};

// A reply's tree in which argument `outPlace` comes back with the content of argument `inPlace`.
EchoConnection::Bytes ReplyWithArgument(const EchoConnection::Bytes& call, int inPlace, int outPlace);
