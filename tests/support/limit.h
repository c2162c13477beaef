#pragma once

#include <sys/resource.h>

/// Lowers a limit of the process for its lifetime.
class Limit
{
public:
    Limit(__rlimit_resource resource, rlim_t value)
        : m_resource(resource)
    {
        ::getrlimit(resource, &m_before);
        const rlimit lowered{value, m_before.rlim_max};
        ::setrlimit(resource, &lowered);
    }
    ~Limit() { ::setrlimit(m_resource, &m_before); }

private:
    const __rlimit_resource m_resource;
    rlimit m_before{};
};
