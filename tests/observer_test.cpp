// SPDX-License-Identifier: MIT
#include <kel/observer.h>

#include <kel/bulletin.h>
#include <kel/observable.h>

#include "support/allocations.h"
#include "support/problem.h"

#include <memory>
#include <vector>

namespace
{
class Counting : public Observer
{
public:
    void update(Notifier& /*notifier*/) override { ++count; }

    int count = 0;
};
} // namespace

TEST(Observer, AttachRecordsTheLinkOnThisSideOnly)
{
    Bulletin obj;
    Counting observer;
    observer.attach(obj.getObservable());
    EXPECT_TRUE(observer.isObserving(obj));
    EXPECT_FALSE(obj.getObservable().has(observer));
    observer.detach(obj.getObservable());
    EXPECT_FALSE(observer.isObserving(obj));
}

TEST(Observer, AttachTwiceThrows)
{
    Observable observable;
    Counting observer;
    observer.attach(observable);
    EXPECT_ASSERTION(observer.attach(observable), "!has(anObservable)");
    observer.detach(observable);
}

TEST(Observer, DetachWithoutALinkThrows)
{
    Observable observable;
    Counting observer;
    EXPECT_ASSERTION(observer.detach(observable), "has(anObservable)");
}

TEST(Observer, DetachAllUnlinksBothSidesOfEveryLink)
{
    std::vector<Bulletin> objs(5);
    Counting observer;
    for (Bulletin& obj : objs)
        obj.getObservable().attach(observer);
    observer.detachAll();
    for (Bulletin& obj : objs)
    {
        EXPECT_FALSE(observer.isObserving(obj));
        EXPECT_TRUE(obj.getObservable().empty());
    }
    observer.detachAll();
}

TEST(Observer, DetachesFromEverythingAtItsEnd)
{
    Observable first;
    Observable second;
    {
        Counting observer;
        first.attach(observer);
        second.attach(observer);
        EXPECT_FALSE(first.empty());
    }
    EXPECT_TRUE(first.empty());
    EXPECT_TRUE(second.empty());
}

TEST(Observer, DropsALinkThatOnlyThisSideHadAtItsEnd)
{
    Observable observable;
    {
        Counting observer;
        observer.attach(observable);
    }
    EXPECT_TRUE(observable.empty());
}

TEST(Observer, IsObservingGivesTheBulletinAnObservable)
{
    Bulletin obj;
    const Counting observer;
    EXPECT_FALSE(observer.isObserving(obj));
    // The observable is there already.
    const std::size_t before = allocations::getCount();
    obj.getObservable();
    EXPECT_EQ(allocations::getCount(), before);
}

TEST(Observer, CopyObservesNothing)
{
    Bulletin obj;
    Counting observer;
    obj.getObservable().attach(observer);
    const Counting copy(observer);
    EXPECT_FALSE(copy.isObserving(obj));
    EXPECT_TRUE(observer.isObserving(obj));
}

TEST(Observer, AssignmentKeepsTheLinksOfBothSides)
{
    Bulletin first;
    Bulletin second;
    Counting target;
    Counting source;
    first.getObservable().attach(target);
    second.getObservable().attach(source);
    target = source;
    EXPECT_TRUE(target.isObserving(first));
    EXPECT_FALSE(target.isObserving(second));
    EXPECT_TRUE(source.isObserving(second));
}
