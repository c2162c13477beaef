#pragma once

#include "devicenode.h"
#include "farend.h"

#include <string>

namespace sim
{
/// A person's terminal program at the far end, with a serial port of its own. While none has that open,
/// whatever the program writes is lost, as on an unplugged line.
class PatchCable : public PtyNode, public FarEnd
{
public:
    explicit PatchCable(const std::string &path);

    /// Hands bytes to the terminal program, as many as fit. Does not block.
    void feed(const quint8 *bytes, std::size_t size, qint64 nowUs) override;
    std::string takeSent() override { return receive(); }
};
} // namespace sim
