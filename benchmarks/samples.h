#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

/// Durations in microseconds.
class Samples
{
public:
    void add(double microseconds) { m_values.push_back(microseconds); }
    size_t size() const { return m_values.size(); }
    double median() { return percentile(50); }
    double percentile(double percent)
    {
        std::sort(m_values.begin(), m_values.end());
        const auto rank = static_cast<size_t>(percent / 100 * static_cast<double>(m_values.size()));
        return m_values.empty() ? 0 : m_values[std::min(rank, m_values.size() - 1)];
    }

private:
    std::vector<double> m_values;
};

/// CLOCK_MONOTONIC in microseconds, the clock of the virtual unit.
inline double nowMicroseconds()
{
    using namespace std::chrono;
    return duration<double, std::micro>(steady_clock::now().time_since_epoch()).count();
}
