#pragma once

/// The six edit fields of the SETUP page and the addresses of the record that they hold: address, netmask and
/// gateway of the first Ethernet interface, then of the second. For the keypad thread.

/// Shows the addresses, each number with three digits. A text that is no address of four numbers shows as
/// "192.168.000.080".
void loadAddressFields();

/// Stores the fields in the record, without leading zeros, and saves the settings. A field that holds no
/// address of four numbers is stored as "192.168.0.80".
void saveAddressFields();
