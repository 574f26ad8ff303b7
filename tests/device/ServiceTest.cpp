// The log tags and the key-value store, as the console asks the TV for them.

#include <cstdint>
#include <optional>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <norvex/device/LogTags.h>
#include <norvex/device/Vconf.h>

#include "FakeService.h"

// One test: the process keeps its first connection.
TEST(DeviceService, SucceedsByAStatusAboveZeroAndWithTheValueThatWasAskedFor) {
    FakeService service;
    std::vector<std::string> methods;
    std::thread daemon([&] {
        const auto connection = service.Accept();
        connection->Welcome();
        const auto answer = [&](std::int32_t status, std::optional<std::int32_t> value) {
            wire::Message message;
            ASSERT_TRUE(connection->Receive(message));
            methods.emplace_back(message.method);
            wire::Buffer tree;
            wire::TreeWriter writer(tree);
            writer.PutValue(0, status);
            if (value)
                writer.PutValue(2, *value);
            connection->Reply(message, tree);
        };
        answer(1, 42);
        answer(0, 43);
        answer(-2, 44);
        answer(1, {});
        answer(1, {});
        answer(0, {});
    });
    int value = 7;
    EXPECT_EQ(vconf_get_int("db/key", &value), 0);
    EXPECT_EQ(value, 42);
    for (const char* why : {"status 0", "status -2", "no value"})
        EXPECT_EQ(vconf_get_int("db/key", &value), -1) << why;
    EXPECT_EQ(value, 42);
    EXPECT_EQ(startdlogtagbydefault("quarle-daemon"), 0);
    EXPECT_EQ(stopdlogtagbydefault("quarle-daemon"), -1) << "status 0";
    daemon.join();
    EXPECT_EQ(methods, (std::vector<std::string>{"GetInt", "GetInt", "GetInt", "GetInt", "StartLogTag", "StopLogTag"}));
}
