// SPDX-License-Identifier: MIT
#include <kel/rules.h>

#include <kel/bulletin.h>
#include <kel/rule.h>

#include "support/allocations.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace
{
using Story = std::vector<std::string>;

class Noting : public Rule
{
public:
    Noting(Story& story, std::string name) : m_story(story), m_name(std::move(name)) {}
    ~Noting() override { m_story.push_back("~" + m_name); }

    void apply(Bulletin& target, Bulletin* other) override
    {
        m_story.push_back(m_name);
        lastTarget = &target;
        lastOther = other;
        if (during)
            during();
    }

    Bulletin* lastTarget = nullptr;
    Bulletin* lastOther = nullptr;
    std::function<void()> during;

private:
    Story& m_story;
    std::string m_name;
};

class RulesTest : public testing::Test
{
protected:
    Noting* add(const BulletinKey& key, const std::string& name)
    {
        auto* const rule = new Noting(m_story, name);
        m_rules->add(key, rule);
        return rule;
    }

    void execute(const BulletinKey& key) { m_rules->execute(key, m_target, &m_other); }

    Story m_story;
    std::unique_ptr<Rules> m_rules = std::make_unique<Rules>();
    BulletinKey m_key{"key"};
    Bulletin m_target;
    Bulletin m_other;
};
} // namespace

TEST_F(RulesTest, SingletonIsOneRegistry)
{
    EXPECT_EQ(&Rules::getSingleton(), &Rules::getSingleton());
}

TEST_F(RulesTest, KeyWithoutRulesDoesNothing)
{
    execute(m_key);
    EXPECT_TRUE(m_story.empty());
}

TEST_F(RulesTest, RunInTheOrderOfAddition)
{
    add(m_key, "first");
    add(m_key, "second");
    add(m_key, "third");
    execute(m_key);
    EXPECT_EQ(m_story, (Story{"first", "second", "third"}));
}

TEST_F(RulesTest, GetTheTargetAndTheOther)
{
    const Noting* const rule = add(m_key, "rule");
    execute(m_key);
    EXPECT_EQ(rule->lastTarget, &m_target);
    EXPECT_EQ(rule->lastOther, &m_other);
    m_rules->execute(m_key, m_other, nullptr);
    EXPECT_EQ(rule->lastTarget, &m_other);
    EXPECT_EQ(rule->lastOther, nullptr);
}

TEST_F(RulesTest, KeysHaveRulesOfTheirOwn)
{
    const BulletinKey other("other");
    add(m_key, "rule");
    add(other, "other rule");
    execute(other);
    EXPECT_EQ(m_story, Story{"other rule"});
}

TEST_F(RulesTest, ThrowingRuleEndsTheRun)
{
    add(m_key, "first")->during = [] { throw std::runtime_error("no"); };
    add(m_key, "second");
    EXPECT_THROW(execute(m_key), std::runtime_error);
    EXPECT_EQ(m_story, Story{"first"});
}

TEST_F(RulesTest, RuleMayAddRules)
{
    Noting* const first = add(m_key, "first");
    first->during = [&]
    {
        first->during = nullptr;
        for (int i = 0; i < 10; ++i)
            add(m_key, "added");
        add(BulletinKey(), "elsewhere");
    };
    execute(m_key);
    EXPECT_EQ(m_story.size(), 11u);
}

TEST_F(RulesTest, AreDeletedWithTheRegistry)
{
    add(m_key, "first");
    add(m_key, "second");
    add(BulletinKey("newer"), "third");
    m_rules->add(m_key, nullptr);
    m_rules.reset();
    EXPECT_EQ(m_story, (Story{"~first", "~second", "~third"}));
}

TEST_F(RulesTest, RuleThatCannotBeKeptIsDeleted)
{
    m_story.reserve(10);
    const auto addWithin = [this](std::size_t allocationsLeft)
    {
        auto* const rule = new Noting(m_story, "rule");
        const allocations::Limit limit(allocationsLeft);
        m_rules->add(m_key, rule);
    };
    // For the entry of the key, and for its list.
    EXPECT_THROW(addWithin(0), std::bad_alloc);
    EXPECT_THROW(addWithin(1), std::bad_alloc);
    EXPECT_EQ(m_story, (Story{"~rule", "~rule"}));
    execute(m_key);
    EXPECT_EQ(m_story.size(), 2u);
}
