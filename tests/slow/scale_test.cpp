// SPDX-License-Identifier: MIT
// Depth and size: long chains and large composites on a small stack, and ten times as many objects in about ten times
// the time. Times are reported and fail nothing.
#include <kel/bulletinboard.h>
#include <kel/commandcontroller.h>
#include <kel/mementos.h>

#include "slow/count.h"
#include "slow/scaled.h"
#include "support/persistable.h"
#include "support/streams.h"
#include "support/teststatus.h"

#include <gtest/gtest.h>

#include <pthread.h>

#include <chrono>
#include <functional>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>

namespace
{
/// Runs the action on a thread with a stack of 256 KiB.
void runOnSmallStack(std::function<void()> action)
{
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
    pthread_t thread{};
    const auto run = [](void* argument) -> void*
    {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &action), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}

double measure(const char* what, std::size_t count, const std::function<void()>& action)
{
    const auto start = std::chrono::steady_clock::now();
    action();
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
    std::cout << what << ' ' << count << ": " << passed.count() << " s" << std::endl;
    return passed.count();
}

/// An object of little size that refers to the next.
class Link : public Bulletin, public Serializable
{
public:
    Link() { ++s_count; }
    ~Link() override { --s_count; }

    SerializableCreator* getCreator() override { return &s_creator; }
    void write(Writer& writer) override { writer.writeObj(static_cast<Link*>(next)); }
    void read(Reader& reader) override { reader.read(next); }
    bool fixup(Reader& reader) override
    {
        reader.fix(next);
        return true;
    }

    static inline CreatorOf<Link> s_creator{"Link"};
    static inline std::size_t s_count = 0;

    Bulletin* next = nullptr;
};

Link* makeChain(std::size_t count)
{
    Link* first = nullptr;
    for (; count > 0; --count)
    {
        auto* const link = new Link;
        link->next = std::exchange(first, link);
    }
    return first;
}

std::size_t deleteChain(Link* link)
{
    std::size_t count = 0;
    for (; link; ++count)
        delete std::exchange(link, static_cast<Link*>(link->next));
    return count;
}

/// Saves and opens a chain; returns the length of what was opened.
std::size_t saveAndOpen(std::size_t count)
{
    std::stringstream stream;
    Link* const saved = makeChain(count);
    Writer(stream, "Scale", false).writeObj(saved);
    deleteChain(saved);
    return deleteChain(dynamic_cast<Link*>(Reader(stream, "Scale", false).perform()));
}
} // namespace

TEST(Scale, ChainOfReferencesNeedsNoStack)
{
    const std::size_t count = scaled(1000000);
    TestStatus status;
    runOnSmallStack([=] { EXPECT_EQ(saveAndOpen(count), count); });
    EXPECT_EQ(Link::s_count, 0u);
}

TEST(Scale, CompositeNeedsNoStack)
{
    const std::size_t count = scaled(1000000);
    TestStatus status;
    runOnSmallStack(
        [=]
        {
            std::size_t document = 0;
            Mementos mementos;
            for (std::size_t i = 0; i < count; ++i)
                mementos.add(new Count(document));
            mementos.execute();
            EXPECT_EQ(document, count);
            mementos.undo();
            EXPECT_EQ(document, 0u);
            mementos.redo();
            EXPECT_EQ(document, count);
        });
}

TEST(Scale, HistoryAndBoardNeedNoStack)
{
    const std::size_t count = scaled(1000000);
    TestStatus status;
    runOnSmallStack(
        [=]
        {
            std::size_t document = 0;
            CommandController controller;
            for (std::size_t i = 0; i < count; ++i)
                controller.execute(new Count(document));
            for (std::size_t i = 0; i < count; ++i)
                controller.undo();
            EXPECT_EQ(document, 0u);
            BulletinBoard board;
            for (std::size_t i = 0; i < count; ++i)
                board.add(new Bulletin);
            EXPECT_EQ(board.size(), count);
        });
}

TEST(Scale, TenTimesTheObjectsTakeAboutTenTimesAsLong)
{
    TestStatus status;
    const std::size_t count = scaled(1000000);
    const double once = measure("saved and opened", count, [=] { EXPECT_EQ(saveAndOpen(count), count); });
    const double tenfold =
        measure("saved and opened", 10 * count, [=] { EXPECT_EQ(saveAndOpen(10 * count), 10 * count); });
    std::cout << "ratio " << tenfold / once << (tenfold <= 15 * once ? " (at most 15)" : " (MORE THAN 15)")
              << std::endl;
}
