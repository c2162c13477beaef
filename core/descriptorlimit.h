#pragma once

/// How many descriptors the process may have, and how many of them connections leave for the device: its
/// files, settings and shell commands need some at any time.
namespace DescriptorLimit
{
/// Descriptors that no connection takes.
constexpr int DeviceReserve = 64;

/// Raises the limit to the highest that the system allows.
void raise();

/// True when a connection that has got this descriptor is the last one in front of the reserve. (The system
/// gives the lowest number that is free.)
bool reachesReserve(int descriptor);
} // namespace DescriptorLimit
