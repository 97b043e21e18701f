// SPDX-License-Identifier: MIT
// libkel: Object model
#pragma once

#include <kel/array.h>
#include <kel/kelapi.h>

#include <map>

class Bulletin;
class BulletinKey;
class Rule;

/// The rules of the process, by key.
///
///     Rules::getSingleton().add(key, new KeepNameUnique);     // at start-up
///     Rules::getSingleton().execute(key, bulletin, nullptr);  // when it is due
class KEL_API Rules
{
public:
    Rules() = default;
    Rules(const Rules&) = delete;
    Rules& operator=(const Rules&) = delete;
    /// Deletes all rules.
    ~Rules();

    /// Made on first use and destroyed at exit.
    static Rules& getSingleton();

    /// Puts a rule behind those that the key has, and owns it from then on, whatever happens. A rule must be added only
    /// once, and null must not be executed; this is not checked.
    void add(const BulletinKey& key, Rule* rule);

    /// Applies the rules of the key in the order of addition; one added meanwhile for the same key takes part. A rule
    /// that throws ends the run.
    void execute(const BulletinKey& key, Bulletin& target, Bulletin* other);

private:
    std::map<unsigned, Array<Rule*>> m_rules;
};
