// SPDX-License-Identifier: MIT
#include <kel/dynamicfactory.h>

#include <kel/changedreceiver.h>
#include <kel/receiver.h>

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

/// Asks, as late as at exit, for what depends on registries of the process, and tells itself of a change.
class LateReader : public Bulletin
{
public:
    LateReader() { m_listener.observe(*this); }
    ~LateReader() override
    {
        Bulletin::notifyChanged();
        if (getKey().getName() != "late" || !(Bulletin::getToolTip() == Ztring("tip")))
            std::abort();
    }

private:
    class Listener : public Receiver, public ChangedReceiver
    {
        void changed(Bulletin&, const Bulletin& how) override
        {
            if (!how.getKey().getName().empty())
                std::abort();
        }
    };

    Listener m_listener;
};

class DynamicFactoryTest : public testing::Test
{
protected:
    ~DynamicFactoryTest() override { m_factory.deleteAll(); }

    DynamicFactory& m_factory = DynamicFactory::getSingleton();
};
} // namespace

TEST_F(DynamicFactoryTest, IsOneBoard)
{
    EXPECT_EQ(&DynamicFactory::getSingleton(), &m_factory);
}

TEST_F(DynamicFactoryTest, ServiceIsCreatedOnDemandOnce)
{
    Greeter* const greeter = Greeter::getSingleton();
    EXPECT_EQ(greeter->greet(), "Hello.");
    EXPECT_EQ(Greeter::getSingleton(), greeter);
}

TEST_F(DynamicFactoryTest, ServiceOfTheApplicationTakesThePlaceOfTheDefault)
{
    auto* const installed = new PoliteGreeter;
    m_factory.add(installed);
    EXPECT_EQ(Greeter::getSingleton(), installed);
    EXPECT_EQ(Greeter::getSingleton()->greet(), "Good morning.");
}

TEST_F(DynamicFactoryTest, SecondServiceUnderTheKeyThrows)
{
    Greeter::getSingleton();
    const auto second = std::make_unique<PoliteGreeter>();
    EXPECT_ASSERTION(m_factory.add(second.get()), "!hasKey(key)");
    EXPECT_EQ(Greeter::getSingleton()->greet(), "Hello.");
}

TEST_F(DynamicFactoryTest, RemovedServiceIsCreatedAnew)
{
    const std::unique_ptr<Greeter> first(Greeter::getSingleton());
    m_factory.remove(*first);
    EXPECT_NE(Greeter::getSingleton(), first.get());
}

TEST_F(DynamicFactoryTest, DestroysTheServicesLeftOnIt)
{
    Story story;
    {
        DynamicFactory factory;
        factory.add(new Tracked(story, "service"));
    }
    EXPECT_EQ(story, (Story{"service?", "service!", "~service"}));
}

TEST(DynamicFactory, ServicesCanUseNamesAndToolTipsAndTellOfChangesAtExit)
{
    auto* const reader = new LateReader;
    DynamicFactory::getSingleton().add(reader);
    reader->setKey(BulletinKey("late"));
    reader->setToolTip("tip");
}
