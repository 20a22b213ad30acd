#include "processuse.h"

#include <QDir>
#include <QFile>

namespace Orvane::TestSupport {

namespace {
/// A pool's thread more or less, and what the allocator keeps for itself.
constexpr int ThreadTolerance = 4;
constexpr int DescriptorTolerance = 4;
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr qint64 MemoryToleranceKb = 1024 * 1024; // theirs, by far
#else
constexpr qint64 MemoryToleranceKb = 20 * 1024;
#endif
} // namespace

ProcessUse ProcessUse::present()
{
    ProcessUse use;
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly)) {
        const auto lines = status.readAll().split('\n');
        for (const QByteArray& line : lines) {
            if (line.startsWith("VmRSS:"))
                use.memoryKb = line.mid(6).trimmed().split(' ').first().toLongLong();
            else if (line.startsWith("Threads:"))
                use.threads = line.mid(8).trimmed().toInt();
        }
    }
    use.descriptors = QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::System | QDir::Files).size();
    return use;
}

QString ProcessUse::growthSince(const ProcessUse& before) const
{
    if (memoryKb <= before.memoryKb + before.memoryKb / 10 + MemoryToleranceKb
        && threads <= before.threads + ThreadTolerance
        && descriptors <= before.descriptors + DescriptorTolerance)
        return {};
    return QStringLiteral(
               "the process has grown: memory %1 kB, then %2; threads %3, then %4; descriptors %5, then %6")
        .arg(before.memoryKb)
        .arg(memoryKb)
        .arg(before.threads)
        .arg(threads)
        .arg(before.descriptors)
        .arg(descriptors);
}

} // namespace Orvane::TestSupport
