// SPDX-License-Identifier: MIT
#include <kel/autodelete.h>

#include "support/recorder.h"
#include "support/tracked.h"

#include <gtest/gtest.h>

#include <stdexcept>

TEST(AutoDelete, DestroysAtTheEndOfTheScope)
{
    Story story;
    {
        const AutoDelete byReference(*new Tracked(story, "reference"));
        const AutoDelete byPointer(new Tracked(story, "pointer"));
        EXPECT_TRUE(story.empty());
    }
    EXPECT_EQ(story, (Story{"pointer?", "pointer!", "~pointer", "reference?", "reference!", "~reference"}));
}

TEST(AutoDelete, LeavesAnObjectThatRefuses)
{
    Story story;
    Tracked obj(story, "obj");
    obj.refuses = true;
    {
        const AutoDelete guard(obj);
    }
    EXPECT_EQ(story, Story{"obj?"});
}

TEST(AutoDelete, ReleasedDestroysNothing)
{
    Story story;
    Tracked obj(story, "obj");
    {
        AutoDelete guard(obj);
        guard.release();
    }
    EXPECT_TRUE(story.empty());
}

TEST(AutoDelete, GuardsNothingWithoutAnObject)
{
    const AutoDelete guard(nullptr);
}

TEST(AutoDelete, DeletesAnObjectWhoseObserverThrowsAndKeepsTheExceptionIn)
{
    Story story;
    Recorder recorder([](const Heard&) { throw std::runtime_error("no"); });
    {
        auto* const obj = new Tracked(story, "obj");
        recorder.observe(*obj);
        const AutoDelete guard(obj);
    }
    EXPECT_EQ(story, (Story{"obj?", "obj!", "~obj"}));
}
