// SPDX-License-Identifier: MIT
// libkel: Application services
#include <kel/message.h>

#include <gtest/gtest.h>

TEST(Message, TypesHaveTheirNumbers)
{
    EXPECT_EQ(static_cast<int>(Message::Info), 0);
    EXPECT_EQ(static_cast<int>(Message::Warning), 1);
    EXPECT_EQ(static_cast<int>(Message::Error), 2);
}
