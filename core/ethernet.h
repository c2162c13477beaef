#pragma once

#include "mxshm.h"

/// One Ethernet interface: its file, its fields in the record, and what a new unit has. The order is address,
/// netmask, gateway.
struct EthernetInterface {
    const char *file;
    SharedText<32> MxShm::*fields[3];
    const char *defaults[3];
};

constexpr EthernetInterface EthernetInterfaces[] = {
    {"/etc/eth0.conf",
     {&MxShm::eth0Address, &MxShm::eth0Netmask, &MxShm::eth0Gateway},
     {"192.168.0.80", "255.255.255.0", "192.168.0.1"}},
    {"/etc/eth1.conf",
     {&MxShm::eth1Address, &MxShm::eth1Netmask, &MxShm::eth1Gateway},
     {"192.168.1.80", "255.255.255.0", "192.168.1.1"}},
};
