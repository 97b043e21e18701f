// SPDX-License-Identifier: MIT
#include <kel/bulletin.h>

#include <kel/killednotifier.h>
#include <kel/observable.h>
#include <kel/tooltips.h>

#include "support/problem.h"
#include "support/recorder.h"
#include "support/tracked.h"

#include <memory>
#include <stdexcept>

namespace
{
// Stands for a caller that dereferences a null pointer, which sanitizers rightly report.
__attribute__((no_sanitize("undefined"))) void destroyNothing()
{
    Bulletin* volatile nothing = nullptr;
    Bulletin::destroy(*nothing, false);
}

class Refusing : public Bulletin
{
public:
    bool canDelete() override { return false; }
};

class Assignable : public Bulletin
{
public:
    int value = 0;
};
} // namespace

TEST(Bulletin, HasAFreshAnonymousKey)
{
    const Bulletin first;
    const Bulletin second;
    EXPECT_NE(first.getKey(), second.getKey());
    EXPECT_EQ(first.getKey().getName(), "");
}

TEST(Bulletin, TakesACopyOfTheKey)
{
    const BulletinKey key("name");
    const Bulletin obj(key);
    EXPECT_EQ(obj.getKey(), key);
    EXPECT_NE(&obj.getKey(), &key);
}

TEST(Bulletin, SetKeyOverwritesTheIdentityInPlace)
{
    Bulletin obj;
    const BulletinKey& key = obj.getKey();
    obj.setKey(BulletinKey("name"));
    EXPECT_EQ(key, BulletinKey("name"));
    EXPECT_EQ(&obj.getKey(), &key);
}

TEST(Bulletin, CopyHasTheSameIdentityButNoObservers)
{
    Bulletin obj;
    Recorder recorder;
    recorder.observe(obj);
    Bulletin copy(obj);
    EXPECT_EQ(copy.getKey(), obj.getKey());
    EXPECT_TRUE(copy.getObservable().empty());
    copy.notifyChanged();
    EXPECT_TRUE(recorder.heard.empty());

    copy.setKey(BulletinKey());
    EXPECT_NE(copy.getKey(), obj.getKey());
}

TEST(Bulletin, AssignmentKeepsIdentityAndObservers)
{
    Assignable target;
    Assignable source;
    source.value = 7;
    const BulletinKey key = target.getKey();
    Recorder recorder;
    recorder.observe(target);
    target = source;
    EXPECT_EQ(target.value, 7);
    EXPECT_EQ(target.getKey(), key);
    EXPECT_TRUE(recorder.isObserving(target));
    EXPECT_FALSE(recorder.isObserving(source));
}

TEST(Bulletin, HasOneObservable)
{
    Bulletin obj;
    EXPECT_EQ(&obj.getObservable(), &obj.getObservable());
}

TEST(Bulletin, PassesANotificationToItsObservers)
{
    Bulletin obj;
    KilledNotifier notifier(obj);
    obj.notifyObservers(notifier);

    Recorder recorder;
    recorder.observe(obj);
    obj.notifyObservers(notifier);
    EXPECT_EQ(recorder.heard, (std::vector<Heard>{{"killed", &obj}}));
}

TEST(Bulletin, NotifyChangedReachesItsObservers)
{
    Bulletin obj;
    obj.notifyChanged();

    Recorder recorder;
    recorder.observe(obj);
    obj.notifyChanged();
    ASSERT_EQ(recorder.operations(), std::vector<std::string>{"changed"});
    EXPECT_EQ(recorder.heard[0].first, &obj);
    EXPECT_NE(recorder.heard[0].second, nullptr);
}

TEST(Bulletin, NotifyChangedMakesNothingWithoutObservers)
{
    Bulletin bulletin;
    const unsigned before = BulletinKey().getNumber();
    bulletin.notifyChanged();
    EXPECT_EQ(BulletinKey().getNumber(), before + 1);
}

TEST(Bulletin, DestroyAsksTellsAndDeletes)
{
    Story story;
    auto* const obj = new Tracked(story, "obj");
    Recorder recorder([&](const Heard& message) { story.push_back(message.operation); });
    recorder.observe(*obj);
    Bulletin::destroy(*obj, false);
    EXPECT_EQ(story, (Story{"obj?", "obj!", "deleted", "~obj"}));
    EXPECT_EQ(recorder.heard, (std::vector<Heard>{{"deleted", obj}}));
}

TEST(Bulletin, DestroyByPointerDoesTheSame)
{
    Story story;
    Bulletin::destroy(new Tracked(story, "obj"), false);
    EXPECT_EQ(story, (Story{"obj?", "obj!", "~obj"}));
}

TEST(Bulletin, DestroyLeavesAnObjectThatRefuses)
{
    Story story;
    Tracked obj(story, "obj");
    obj.refuses = true;
    Recorder recorder;
    recorder.observe(obj);
    Bulletin::destroy(obj, false);
    Bulletin::destroy(&obj, false);
    EXPECT_EQ(story, (Story{"obj?", "obj?"}));
    EXPECT_TRUE(recorder.heard.empty());
}

TEST(Bulletin, ForcedDestroyAsksAllTheSame)
{
    Story story;
    auto* const obj = new Tracked(story, "obj");
    obj->refuses = true;
    Bulletin::destroy(*obj, true);
    auto* const other = new Tracked(story, "other");
    other->refuses = true;
    Bulletin::destroy(other, true);
    EXPECT_EQ(story, (Story{"obj?", "obj!", "~obj", "other?", "other!", "~other"}));
}

TEST(Bulletin, DestroyOfANullPointerDoesNothing)
{
    EXPECT_NO_THROW(Bulletin::destroy(nullptr, false));
    EXPECT_NO_THROW(Bulletin::destroy(nullptr, true));
}

TEST(Bulletin, DestroyOfNothingThrows)
{
    EXPECT_ASSERTION(destroyNothing(), "valid(&deadObj)");
}

TEST(Bulletin, LivesOnWhenAnObserverThrowsAtItsDeletion)
{
    Story story;
    auto* const obj = new Tracked(story, "obj");
    Recorder recorder([](const Heard&) { throw std::runtime_error("no"); });
    recorder.observe(*obj);
    EXPECT_THROW(Bulletin::destroy(*obj, false), std::runtime_error);
    EXPECT_EQ(story, (Story{"obj?", "obj!"}));

    recorder.during = nullptr;
    Bulletin::destroy(*obj, false);
    EXPECT_EQ(story.back(), "~obj");
}

TEST(Bulletin, MayBeDestroyedInsideItsOwnNotification)
{
    Story story;
    auto* const obj = new Tracked(story, "obj");
    Recorder first;
    Recorder second;
    const auto destroyOnChange = [obj](const Heard& message)
    {
        if (message.operation == "changed")
            Bulletin::destroy(obj, false);
    };
    first.during = destroyOnChange;
    second.during = destroyOnChange;
    first.observe(*obj);
    second.observe(*obj);
    obj->notifyChanged();
    EXPECT_EQ(story.back(), "~obj");
    // Both hear of the deletion, but nobody hears of the change after it.
    EXPECT_EQ(first.heard.size() + second.heard.size(), 3u);
}

TEST(Bulletin, CloneOfAClassWithoutOneThrowsAlthoughItClaimsToHaveOne)
{
    const Bulletin obj;
    EXPECT_TRUE(obj.canClone());
    EXPECT_ASSERTION(obj.clone(), "false");
}

TEST(Bulletin, CanBeDeletedUnlessItRefuses)
{
    EXPECT_TRUE(Bulletin().canDelete());
    EXPECT_FALSE(Refusing().canDelete());
}

TEST(Bulletin, HasNoToolTipAtFirst)
{
    EXPECT_TRUE(Bulletin().getToolTip().empty());
}

TEST(Bulletin, SharesItsToolTipWithAllOfItsKey)
{
    Bulletin obj;
    obj.setToolTip("tip");
    const Bulletin copy(obj);
    EXPECT_EQ(obj.getToolTip(), Ztring("tip"));
    EXPECT_EQ(copy.getToolTip(), Ztring("tip"));
    EXPECT_EQ(ToolTips::getSingleton().get(obj.getKey()), Ztring("tip"));
}

TEST(Bulletin, FirstToolTipStays)
{
    Bulletin obj;
    obj.setToolTip("first");
    obj.setToolTip("second");
    obj.setToolTip("");
    EXPECT_EQ(obj.getToolTip(), Ztring("first"));
}

TEST(Bulletin, EmptyToolTipIsNone)
{
    Bulletin obj;
    obj.setToolTip("");
    obj.setToolTip("tip");
    EXPECT_EQ(obj.getToolTip(), Ztring("tip"));
}
