// SPDX-License-Identifier: MIT
// How much a test program has tried.
#pragma once

#include <cstddef>
#include <cstdio>

/// Counts in one program, and prints the sum when the program ends.
class Tally
{
public:
    /// @param what what is counted, in the plural
    explicit Tally(const char* what) : m_what(what) {}
    Tally(const Tally&) = delete;
    Tally& operator=(const Tally&) = delete;
    ~Tally()
    {
        if (m_count > 0)
            std::printf("%zu %s\n", m_count, m_what);
    }

    void add(std::size_t count = 1) { m_count += count; }

private:
    const char* m_what;
    std::size_t m_count = 0;
};
