// SPDX-License-Identifier: MIT
// libkel: Object model
#pragma once

#include <utility>

class Bulletin;

/// While it lives, a board that is to take a bulletin over leaves it to its owner when memory runs out, instead of
/// destroying it. It is over as soon as a board has taken the bulletin. Lives on the stack only, as a LifeWatch does.
class Lending
{
public:
    explicit Lending(const Bulletin& obj) : m_obj(&obj), m_outer(std::exchange(s_innermost, this)) {}
    Lending(const Lending&) = delete;
    Lending& operator=(const Lending&) = delete;
    ~Lending() { s_innermost = m_outer; }

    bool isOver() const { return m_obj == nullptr; }

    static bool isLent(const Bulletin& obj)
    {
        for (const Lending* lending = s_innermost; lending != nullptr; lending = lending->m_outer)
        {
            if (lending->m_obj == &obj)
                return true;
        }
        return false;
    }

    /// Called by the board that takes it over.
    static void end(const Bulletin& obj)
    {
        for (Lending* lending = s_innermost; lending != nullptr; lending = lending->m_outer)
        {
            if (lending->m_obj == &obj)
                lending->m_obj = nullptr;
        }
    }

private:
    static inline constinit Lending* s_innermost = nullptr;

    const Bulletin* m_obj;
    Lending* const m_outer;
};
