// Any class and any vector of one goes the same way: out in a call, back in its reply.

#include <gtest/gtest.h>
#include <norvex/core/MarshallingHelperProxy.h>
#include <norvex/core/MessageBuffer.h>

#include "EchoConnection.h"
#include "TestTypes.h"

namespace {

// What comes back when `sent` is an in argument and the reply brings it as the out argument.
bool TravelThere(TCMarshalable& sent, TCMarshalable& received) {
    EchoConnection connection;
    connection.answer = [](const EchoConnection::Bytes& call) { return ReplyWithArgument(call, 1, 0); };
    TCMarshallingHelperProxy helper;
    helper.PushMarshalableClass(MARSHALLING_OUT, &received);
    helper.PushMarshalableClass(MARSHALLING_IN, &sent);
    std::string interfaceName = "test";
    return helper.Run(&connection, interfaceName, "Echo", 0, false);
}

template <class T> void RandomObjects(int rounds) {
    std::mt19937 random(20260301);
    for (int round = 0; round < rounds; ++round) {
        T sent = T::Random(random);
        T received;
        ASSERT_TRUE(TravelThere(sent, received));
        ASSERT_TRUE(sent == received) << round;
        TCMessageBuffer buffer;
        T loaded;
        ASSERT_TRUE(sent.Store(&buffer));
        ASSERT_TRUE(loaded.Load(&buffer));
        ASSERT_TRUE(sent == loaded) << round;
    }
}

template <class T> void RandomVectors(int rounds, std::size_t longest) {
    std::mt19937 random(20260302);
    for (int round = 0; round < rounds; ++round) {
        std::vector<T> sent;
        for (std::size_t count = random() % (longest + 1); count > 0; --count)
            sent.push_back(T::Random(random));
        std::vector<T> received(random() % 4);
        TestVector<T> sentArgument(sent);
        TestVector<T> receivedArgument(received);
        ASSERT_TRUE(TravelThere(sentArgument, receivedArgument));
        ASSERT_EQ(sent.size(), received.size());
        ASSERT_TRUE(sent == received) << round;
    }
}

} // namespace

TEST(RoundTrip, Objects) {
    RandomObjects<Numbers>(300);
    RandomObjects<Mixed>(300);
    RandomObjects<Group>(200);
}

TEST(RoundTrip, Vectors) {
    RandomVectors<Numbers>(50, 30);
    RandomVectors<Mixed>(50, 30);
    RandomVectors<Group>(30, 20);
}

TEST(RoundTrip, TextsOfAnyLengthAndContent) {
    std::mt19937 random(20260303);
    for (const std::size_t longest : {3u, 15u, 16u, 300u, 70000u}) {
        for (int round = 0; round < 20; ++round) {
            std::string sent = RandomText(random, longest);
            std::string received;
            TestText sentArgument(sent);
            TestText receivedArgument(received);
            ASSERT_TRUE(TravelThere(sentArgument, receivedArgument));
            ASSERT_EQ(sent, received);
        }
    }
}

TEST(RoundTrip, MoreElementsThanThereAreTags) {
    std::vector<Numbers> sent(70000);
    for (std::size_t i = 0; i < sent.size(); ++i)
        sent[i].wide = i;
    std::vector<Numbers> received;
    TestVector<Numbers> sentArgument(sent);
    TestVector<Numbers> receivedArgument(received);
    ASSERT_TRUE(TravelThere(sentArgument, receivedArgument));
    EXPECT_TRUE(sent == received);
}

TEST(RoundTrip, ATreeOverTheLimitIsNotSent) {
    std::string sent(65u << 20, 'x');
    std::string received = "as it was";
    TestText sentArgument(sent);
    TestText receivedArgument(received);
    EXPECT_FALSE(TravelThere(sentArgument, receivedArgument));
    EXPECT_EQ(received, "as it was");
}

TEST(RoundTrip, PlainValuesOfAnySize) {
    std::mt19937 random(20260304);
    for (int size = 0; size <= 64; ++size) {
        std::vector<unsigned char> sent(64);
        for (unsigned char& byte : sent)
            byte = static_cast<unsigned char>(random());
        std::vector<unsigned char> received(64, 0xEE);
        EchoConnection connection;
        connection.answer = [](const EchoConnection::Bytes& call) { return ReplyWithArgument(call, 1, 0); };
        TCMarshallingHelperProxy helper;
        helper.PushValue(MARSHALLING_OUT, size, received.data());
        helper.PushValue(MARSHALLING_IN, size, sent.data());
        std::string interfaceName = "test";
        ASSERT_TRUE(helper.Run(&connection, interfaceName, "Echo", 0, false));
        for (int i = 0; i < 64; ++i)
            ASSERT_EQ(received[static_cast<std::size_t>(i)], i < size ? sent[static_cast<std::size_t>(i)] : 0xEE);
    }
}
