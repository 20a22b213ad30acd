#include "udpportusers_p.h"

#include <QDir>
#include <QFile>
#include <QList>

#include <array>

#include <unistd.h>

namespace Orvane::ECProxy::Client::Internal {

namespace {

// Columns of a line of the table.
constexpr int LocalAddressColumn = 1;
constexpr int InodeColumn = 9;

QByteArray readTable(const char* path)
{
    QFile table(QString::fromLatin1(path));
    return table.open(QIODevice::ReadOnly) ? table.readAll() : QByteArray();
}

SocketInodes socketsOfThisProcess()
{
    const QByteArray prefix("socket:[");
    const QString directory = QStringLiteral("/proc/self/fd");
    SocketInodes inodes;
    const QStringList descriptors = QDir(directory).entryList(QDir::System | QDir::Files);
    for (const QString& descriptor : descriptors) {
        std::array<char, 64> target{};
        const auto size =
            readlink(qPrintable(directory + QLatin1Char('/') + descriptor), target.data(), target.size());
        const QByteArray name(target.data(), int(qMax<ssize_t>(size, 0)));
        if (name.startsWith(prefix) && name.endsWith(']'))
            inodes += name.mid(prefix.size(), name.size() - prefix.size() - 1).toULongLong();
    }
    return inodes;
}

} // namespace

SocketInodes socketsOnPort(const QByteArray& table, quint16 port)
{
    SocketInodes inodes;
    const QList<QByteArray> lines = table.split('\n');
    for (const QByteArray& line : lines) {
        const QList<QByteArray> columns = line.simplified().split(' ');
        if (columns.size() <= InodeColumn)
            continue;
        const QByteArray& address = columns.at(LocalAddressColumn); // 0100007F:8AE3
        bool isPort = false;
        bool isInode = false;
        const uint linePort = address.mid(address.lastIndexOf(':') + 1).toUInt(&isPort, 16);
        const quint64 inode = columns.at(InodeColumn).toULongLong(&isInode);
        if (isPort && isInode && linePort == port)
            inodes += inode;
    }
    return inodes;
}

SocketInodes socketsOfOthers(quint16 port)
{
    // A socket that this process opens or closes meanwhile is in one of the two readings.
    const SocketInodes ownBefore = socketsOfThisProcess();
    SocketInodes inodes = socketsOnPort(readTable("/proc/self/net/udp"), port);
    inodes += socketsOnPort(readTable("/proc/self/net/udp6"), port);
    inodes -= ownBefore;
    if (!inodes.isEmpty())
        inodes -= socketsOfThisProcess();
    return inodes;
}

} // namespace Orvane::ECProxy::Client::Internal
