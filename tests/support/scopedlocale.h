// SPDX-License-Identifier: MIT
// Sets a locale for a scope, for what depends on the encoding of bytes.
#pragma once

#include <gtest/gtest.h>

#include <clocale>
#include <string>

/// Sets the C locale, "C.utf8" or "C", and restores the one before.
class ScopedLocale
{
public:
    explicit ScopedLocale(const char* name) : m_before(std::setlocale(LC_ALL, nullptr))
    {
        EXPECT_NE(std::setlocale(LC_ALL, name), nullptr) << name;
    }
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;
    ~ScopedLocale() { std::setlocale(LC_ALL, m_before.c_str()); }

private:
    std::string m_before;
};
