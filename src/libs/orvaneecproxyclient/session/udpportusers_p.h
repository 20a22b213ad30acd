#pragma once

#include <QByteArray>
#include <QSet>
#include <QtGlobal>

namespace Orvane::ECProxy::Client::Internal {

/// Sockets by their inode number, which the kernel never gives to two sockets at the same time.
using SocketInodes = QSet<quint64>;

/// The sockets in the kernel's table of UDP sockets (/proc/net/udp or udp6) that are bound to `port`. Lines
/// that are not understood are passed over.
SocketInodes socketsOnPort(const QByteArray& table, quint16 port);

/// The sockets of other processes that have the UDP port, in this network namespace. Empty also where the
/// kernel's tables cannot be read. Any thread.
SocketInodes socketsOfOthers(quint16 port);

} // namespace Orvane::ECProxy::Client::Internal
