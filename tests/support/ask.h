#pragma once

#include <QByteArray>

/// Sends this over TCP, or to one of the eight UDP ports, and runs the event loop until something has come
/// back. \return what has come, empty when nothing did in 10 s
QByteArray askTcp(const QByteArray &block);
QByteArray askUdp(const QByteArray &datagram, int port = 0);
