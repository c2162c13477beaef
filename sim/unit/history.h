#pragma once

#include <cstddef>
#include <deque>
#include <utility>
#include <vector>

namespace sim
{
/// The most recent items; older ones are forgotten, since a unit may run for weeks.
template <class T>
class History
{
public:
    explicit History(std::size_t limit = 1000)
        : m_limit(limit)
    {
    }

    void add(T item)
    {
        if (m_items.size() == m_limit) {
            m_items.pop_front();
        }
        m_items.push_back(std::move(item));
    }

    /// A copy, oldest first.
    std::vector<T> items() const { return {m_items.begin(), m_items.end()}; }

private:
    std::size_t m_limit;
    std::deque<T> m_items;
};
} // namespace sim
