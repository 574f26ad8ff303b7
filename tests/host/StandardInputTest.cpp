#include "StandardInput.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

namespace {

class StandardInput : public testing::Test {
protected:
    void SetUp() override {
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        m_Read = ends[0];
        m_Write = ends[1];
        m_Input = std::make_unique<host::TCStandardInput>(m_Read);
    }

    void TearDown() override {
        ::close(m_Read);
        CloseWriter();
    }

    void Write(std::string_view text) {
        ASSERT_EQ(::write(m_Write, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    void CloseWriter() {
        if (m_Write != -1) {
            ::close(m_Write);
            m_Write = -1;
        }
    }

    int m_Read = -1;
    int m_Write = -1;
    std::unique_ptr<host::TCStandardInput> m_Input;
};

TEST_F(StandardInput, GivesWhatIsThereWithoutWaitingForMore) {
    Write("5\n");
    EXPECT_EQ(m_Input->Next(), "5\n");
    Write("1 2 3");
    EXPECT_EQ(m_Input->Next(), "1 2 3");
}

TEST_F(StandardInput, IsEmptyAtTheEnd) {
    Write("5");
    CloseWriter();
    EXPECT_EQ(m_Input->Next(), "5");
    EXPECT_EQ(m_Input->Next(), "");
}

TEST_F(StandardInput, AnErrorIsTheEnd) {
    host::TCStandardInput closed(-1);
    EXPECT_EQ(closed.Next(), "");
}

TEST_F(StandardInput, ADescriptorLeftNonBlockingIsWaitedFor) {
    ASSERT_EQ(::fcntl(m_Read, F_SETFL, O_NONBLOCK), 0);
    std::thread writer([this] { Write("late\n"); });
    EXPECT_EQ(m_Input->Next(), "late\n");
    writer.join();
}

} // namespace
