// SPDX-License-Identifier: MIT
// Real limits of the system.
#pragma once

#include <sys/resource.h>

#include <csignal>

/// While it lives, a resource of the process is limited.
class Limit
{
public:
    Limit(__rlimit_resource resource, rlim_t limit) : m_resource(resource)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(m_resource, &m_before);
        const rlimit now{limit, m_before.rlim_max};
        setrlimit(m_resource, &now);
    }
    Limit(const Limit&) = delete;
    Limit& operator=(const Limit&) = delete;
    ~Limit() { setrlimit(m_resource, &m_before); }

private:
    __rlimit_resource m_resource;
    rlimit m_before{};
};
