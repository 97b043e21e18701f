// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#pragma once

/// Sets a re-entrancy flag, which must not be set yet, and clears it at the end of the scope, also when an exception
/// passes through.
class FlagGuard
{
public:
    explicit FlagGuard(bool& flag) : m_flag(flag) { m_flag = true; }
    ~FlagGuard() { m_flag = false; }

    FlagGuard(const FlagGuard&) = delete;
    FlagGuard& operator=(const FlagGuard&) = delete;

private:
    bool& m_flag;
};
