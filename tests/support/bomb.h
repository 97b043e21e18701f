// SPDX-License-Identifier: MIT
// Callbacks of the application that throw: at each of their calls, with each kind of exception.
#pragma once

#include <kel/interrupted.h>
#include <kel/problem.h>

#include "tally.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>

/// What a callback throws.
enum class Kind
{
    Problem,
    Interrupted,
    Standard,
    Integer
};

inline constexpr Kind s_kinds[] = {Kind::Problem, Kind::Interrupted, Kind::Standard, Kind::Integer};

inline const std::string s_nothing = "nothing";

/// What is thrown, as caughtBy() names it.
inline std::string getName(Kind kind)
{
    const char* const names[] = {"Problem failed", "Interrupted", "runtime_error failed", "int 7"};
    return names[static_cast<std::size_t>(kind)];
}

/// What comes out of an action: s_nothing or a name of getName.
inline std::string caughtBy(const std::function<void()>& action)
{
    try
    {
        action();
    }
    catch (const Interrupted&)
    {
        return "Interrupted";
    }
    catch (const Problem& problem)
    {
        return "Problem " + problem.getMessage().toUtf8();
    }
    catch (const std::runtime_error& error)
    {
        return std::string("runtime_error ") + error.what();
    }
    catch (int number)
    {
        return "int " + std::to_string(number);
    }
    return s_nothing;
}

inline Tally s_exceptions("exceptions");

/// Throws at its call with a given number, counted from 1; at none for 0.
class Bomb
{
public:
    void arm(std::size_t call, Kind kind)
    {
        m_left = call;
        m_kind = kind;
    }
    void disarm() { m_left = 0; }
    /// Whether the call is still to come.
    bool isArmed() const { return m_left != 0; }

    void call()
    {
        if (m_left == 0 || --m_left != 0)
            return;
        s_exceptions.add();
        switch (m_kind)
        {
        case Kind::Problem:
            Problem::throwProblem("failed");
        case Kind::Interrupted:
            throw Interrupted();
        case Kind::Standard:
            throw std::runtime_error("failed");
        case Kind::Integer:
            throw 7;
        }
    }

private:
    std::size_t m_left = 0;
    Kind m_kind = Kind::Integer;
};

/// Calls `attempt` with every kind for every call up to the given one.
inline void forEach(std::size_t calls, const std::function<void(std::size_t, Kind)>& attempt)
{
    for (const Kind kind : s_kinds)
    {
        for (std::size_t call = 1; call <= calls; ++call)
        {
            SCOPED_TRACE(testing::Message() << getName(kind) << " at call " << call);
            attempt(call, kind);
        }
    }
}
