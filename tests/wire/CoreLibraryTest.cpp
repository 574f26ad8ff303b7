#include <cstdlib>

#include <dlfcn.h>

#include <gtest/gtest.h>
#include <norvex/core/Assert.h>
#include <norvex/core/DebugMenuUtility.h>
#include <norvex/core/PrintMessage.h>

#include "LogWatch.h"

namespace {

// What the function of the library that a test opens leaves behind.
constexpr const char* kTrace = "NORVEX_TEST_OPENED";

} // namespace

TEST(DebugMenuUtility, ANumberIsANonEmptyRunOfDigits) {
    for (const char* number : {"0", "7", "99", "007", "4294967296", "123456789012345678901234567890"})
        EXPECT_TRUE(TCDebugMenuUtility::IsNumber(number)) << number;
    for (const char* text : {"", "-1", "+1", " 1", "1 ", "1a", "a", "0x10", "1.0", "\xB2", "\xD9\xA1"})
        EXPECT_FALSE(TCDebugMenuUtility::IsNumber(text)) << text;
    EXPECT_FALSE(TCDebugMenuUtility::IsNumber(std::string("1\0", 2)));
}

TEST(DebugMenuUtility, OpensALibraryAndCallsItsEntry) {
    unsetenv(kTrace);
    EXPECT_TRUE(TCDebugMenuUtility::OpenLibrary(OPENED_LIBRARY, "opened_entry"));
    ASSERT_NE(std::getenv(kTrace), nullptr);
    EXPECT_STREQ(std::getenv(kTrace), "called");
    EXPECT_EQ(dlopen(OPENED_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr) << "it has gone again";
    unsetenv(kTrace);
}

TEST(DebugMenuUtility, AMissingLibraryOrEntryIsALineInTheLog) {
    const LogWatch log;
    EXPECT_FALSE(TCDebugMenuUtility::OpenLibrary("/nowhere/libmissing.so", "entry"));
    EXPECT_FALSE(TCDebugMenuUtility::OpenLibrary(OPENED_LIBRARY, "no_such_entry"));
    EXPECT_FALSE(TCDebugMenuUtility::OpenLibrary(nullptr, nullptr));
    const std::vector<std::string> lines = log.GetLines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_NE(lines[0].find("/nowhere/libmissing.so"), std::string::npos);
    EXPECT_NE(lines[1].find("no_such_entry"), std::string::npos);
}

TEST(CoreLibrary, AssertionsAndMessagesGoToTheLogAlone) {
    const LogWatch log;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    _TCApiAssert("m_data", "a/file", 72, nullptr);
    _TCApiAssert("m_data", "a/file", 93, "with a message");
    TCApiPrintMessage("tag %d has do data", 12);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    const std::vector<std::string> lines = log.GetLines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_NE(lines[0].find("\"m_data\" failed, a/file:72"), std::string::npos);
    EXPECT_NE(lines[1].find("with a message"), std::string::npos);
    EXPECT_NE(lines[2].find(": tag 12 has do data"), std::string::npos);
}
