#pragma once

#include "farend.h"

#include <string>

namespace sim
{
/// A far end that only keeps what has come.
class Recorder : public FarEnd
{
public:
    void feed(const quint8 *bytes, std::size_t size, qint64 nowUs) override;

    /// What has come since the last call, at most the last MiB.
    std::string take();

private:
    std::string m_bytes;
};
} // namespace sim
