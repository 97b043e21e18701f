// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/emptystring_kel.h>

#include <gtest/gtest.h>

TEST(EmptyString, IsEmpty)
{
    EXPECT_EQ(Kel::emptyString, "");
}
