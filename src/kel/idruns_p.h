// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <cstdint>
#include <vector>

/// The ids of the members of a collection, in order. The first collection of a document mostly has all its members
/// written one after the other, and then they take no more memory than one of them.
class IdRuns
{
public:
    void append(std::uint64_t id)
    {
        if (!m_runs.empty() && id == m_runs.back().last + 1)
            m_runs.back().last = id;
        else
            m_runs.push_back({id, id});
    }

    template <class Visit>
    void forEach(const Visit& visit) const
    {
        for (const Run& run : m_runs)
        {
            visit(run.first);
            for (std::uint64_t id = run.first; id != run.last;)
                visit(++id);
        }
    }

private:
    struct Run
    {
        std::uint64_t first;
        std::uint64_t last;
    };

    std::vector<Run> m_runs;
};
