// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/nativereader.h>

#include <kel/bulletin.h>
#include <kel/reader.h>

#include "support/problem.h"
#include "support/streams.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>

TEST(NativeReader, ReadsOneReferenceIntoTheSlot)
{
    std::istringstream in(getPreamble() + "1a b ");
    Reader reader(in, "Test", false);
    Bulletin* slot = nullptr;
    const NativeReader readNative;
    readNative(reader, slot);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(slot), 0x1au);
    readNative(reader, slot);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(slot), 0xbu);
}

TEST(NativeReader, FailsAtTheEndOfTheStream)
{
    std::istringstream in(getPreamble() + "1a");
    Reader reader(in, "Test", false);
    Bulletin* slot = nullptr;
    EXPECT_PROBLEM(NativeReader()(reader, slot), "Premature end of file");
}
