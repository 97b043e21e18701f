// SPDX-License-Identifier: MIT
// libkel: Object model
#include <kel/rules.h>

#include <kel/bulletinkey.h>
#include <kel/ownedqueue.h>
#include <kel/rule.h>

#include <memory>
#include <utility>

Rules::~Rules()
{
    for (const auto& [number, rules] : m_rules)
    {
        for (Rule* const rule : rules)
            delete rule;
    }
}

Rules& Rules::getSingleton()
{
    static Rules singleton;
    return singleton;
}

void Rules::add(const BulletinKey& key, Rule* rule)
{
    std::unique_ptr<Rule> owned(rule);
    pushBackOwned(m_rules[key.getNumber()], std::move(owned));
}

void Rules::execute(const BulletinKey& key, Bulletin& target, Bulletin* other)
{
    const auto found = m_rules.find(key.getNumber());
    if (found == m_rules.end())
        return;
    // By index: a rule may add rules.
    const Array<Rule*>& rules = found->second;
    for (unsigned i = 0; i < rules.size(); ++i)
        rules[i]->apply(target, other);
}
