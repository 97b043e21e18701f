// SPDX-License-Identifier: MIT
#include <kel/dynamicfactory.h>

#include "support/problem.h"
#include "support/tracked.h"

#include <memory>

namespace
{
class Greeter : public Bulletin
{
public:
    Greeter() : Bulletin(getStaticKey()) {}
    virtual std::string greet() const { return "Hello."; }
    static const BulletinKey& getStaticKey()
    {
        static const BulletinKey key("Greeter");
        return key;
    }
    static Greeter* getSingleton() { return &DynamicFactory::getSingleton().getOrCreate<Greeter>(); }
};

class PoliteGreeter : public Greeter
{
public:
    std::string greet() const override { return "Good morning."; }
};

/// Asks, as late as at exit, for what depends on registries of the process.
class LateReader : public Bulletin
{
public:
    ~LateReader() override
    {
        if (getKey().getName() != "late" || !(Bulletin::getToolTip() == Ztring("tip")))
            std::abort();
    }
};
} // namespace

TEST(DynamicFactory, IsOneBoard)
{
    EXPECT_EQ(&DynamicFactory::getSingleton(), &DynamicFactory::getSingleton());
}

TEST(DynamicFactory, ServiceIsCreatedOnDemandOnce)
{
    Greeter* const greeter = Greeter::getSingleton();
    EXPECT_EQ(greeter->greet(), "Hello.");
    EXPECT_EQ(Greeter::getSingleton(), greeter);
}

TEST(DynamicFactory, ServiceOfTheApplicationTakesThePlaceOfTheDefault)
{
    auto* const installed = new PoliteGreeter;
    DynamicFactory::getSingleton().add(installed);
    EXPECT_EQ(Greeter::getSingleton(), installed);
    EXPECT_EQ(Greeter::getSingleton()->greet(), "Good morning.");
}

TEST(DynamicFactory, SecondServiceUnderTheKeyThrows)
{
    Greeter::getSingleton();
    const auto second = std::make_unique<PoliteGreeter>();
    EXPECT_ASSERTION(DynamicFactory::getSingleton().add(second.get()), "!hasKey(key)");
    EXPECT_EQ(Greeter::getSingleton()->greet(), "Hello.");
}

TEST(DynamicFactory, RemovedServiceIsCreatedAnew)
{
    const std::unique_ptr<Greeter> first(Greeter::getSingleton());
    DynamicFactory::getSingleton().remove(*first);
    EXPECT_NE(Greeter::getSingleton(), first.get());
}

TEST(DynamicFactory, DestroysTheServicesLeftOnIt)
{
    Story story;
    {
        DynamicFactory factory;
        factory.add(new Tracked(story, "service"));
    }
    EXPECT_EQ(story, (Story{"service?", "service!", "~service"}));
}

TEST(DynamicFactory, ServicesCanUseNamesAndToolTipsAtExit)
{
    auto* const reader = new LateReader;
    DynamicFactory::getSingleton().add(reader);
    reader->setKey(BulletinKey("late"));
    reader->setToolTip("tip");
}
