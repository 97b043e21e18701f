// SPDX-License-Identifier: MIT
// libkel: Object model
#pragma once

#include <utility>

class Bulletin;

/// Tells whether a bulletin is still alive after calls that may have destroyed it. Lives on the stack only, so that
/// watches end in the reverse order of their beginning.
///
///     const LifeWatch watch(bulletin);
///     bulletin.notifyChanged();
///     if (watch.isAlive())
///         ... bulletin ...
class LifeWatch
{
public:
    explicit LifeWatch(const Bulletin& bulletin) : m_bulletin(&bulletin), m_outer(std::exchange(s_innermost, this)) {}
    LifeWatch(const LifeWatch&) = delete;
    LifeWatch& operator=(const LifeWatch&) = delete;
    ~LifeWatch() { s_innermost = m_outer; }

    bool isAlive() const { return m_bulletin != nullptr; }

    /// Called by the destructor of every bulletin.
    static void tellOfDeath(const Bulletin& bulletin)
    {
        for (LifeWatch* watch = s_innermost; watch != nullptr; watch = watch->m_outer)
        {
            if (watch->m_bulletin == &bulletin)
                watch->m_bulletin = nullptr;
        }
    }

private:
    static inline constinit LifeWatch* s_innermost = nullptr;

    const Bulletin* m_bulletin;
    LifeWatch* const m_outer;
};
