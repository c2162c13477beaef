#include "descriptorlimit.h"

#include <sys/resource.h>

void DescriptorLimit::raise()
{
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

bool DescriptorLimit::reachesReserve(int descriptor)
{
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    return static_cast<rlim_t>(descriptor) + 1 + DeviceReserve >= limit.rlim_cur;
}
