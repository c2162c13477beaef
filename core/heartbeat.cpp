#include "heartbeat.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace
{
/// Held only to enter, to leave and to look, so that a thread that is stuck does not hold it.
std::mutex door;
std::vector<Heartbeat *> all;
} // namespace

Heartbeat::Heartbeat()
{
    const std::lock_guard<std::mutex> guard(door);
    all.push_back(this);
}

Heartbeat::~Heartbeat()
{
    const std::lock_guard<std::mutex> guard(door);
    all.erase(std::remove(all.begin(), all.end(), this), all.end());
}

bool Heartbeat::allBeat()
{
    const std::lock_guard<std::mutex> guard(door);
    const bool areAll = std::all_of(all.begin(), all.end(), [](const Heartbeat *heart) {
        return heart->m_beaten.load(std::memory_order_relaxed);
    });
    if (areAll) {
        for (Heartbeat *heart : all) {
            heart->m_beaten.store(false, std::memory_order_relaxed);
        }
    }
    return areAll;
}
