// SPDX-License-Identifier: MIT
// libkel: Object model
#pragma once

#include <kel/kelapi.h>

class Bulletin;

/// What an application wants done to a bulletin when something happens about a key; kept in Rules.
class KEL_API Rule
{
public:
    virtual ~Rule();

    /// Does it. `other` is whatever the caller of Rules::execute passed along and may be null.
    virtual void apply(Bulletin& target, Bulletin* other) = 0;

protected:
    Rule() = default;
    Rule(const Rule&) = default;
    Rule& operator=(const Rule&) = default;
};
