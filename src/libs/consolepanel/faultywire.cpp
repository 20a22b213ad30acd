#include "faultywire.h"

#include "upmessage.h"

namespace Orvane::ConsolePanel {

using namespace ECProxy::Client;

namespace {

bool isRelease(const QByteArray& datagram)
{
    return datagram.size() >= ECValueOffset
        && Wire::load<quint16>(datagram.constData() + ECHeadSize) == ReportECButtonRelease;
}

} // namespace

bool FaultyWire::happens(int rate)
{
    // Not std::uniform_int_distribution, whose numbers differ from one library to the next. One number a
    // fault, also where it cannot happen, so that another rate leaves the other faults where they were.
    return int(m_random() % 100) < rate;
}

std::vector<FaultyWire::Arrival> FaultyWire::pass(const QByteArray& datagram)
{
    const bool isDropped = happens(m_faults.dropRate);
    const bool isDuplicated = happens(m_faults.duplicateRate);
    const bool isDelayed = happens(m_faults.delayRate);
    const bool isOvertaken = happens(m_faults.reorderRate);
    std::vector<Arrival> arrivals;
    const bool isLost = m_faults.losesNextRelease && isRelease(datagram);
    if (isLost)
        m_faults.losesNextRelease = false;
    if (!isLost && !isDropped) {
        if (isOvertaken && !m_waiting) {
            m_waiting = datagram;
            return arrivals;
        }
        const auto after = isDelayed ? m_faults.delay : std::chrono::milliseconds(0);
        arrivals.push_back({datagram, after});
        if (isDuplicated)
            arrivals.push_back({datagram, after});
    }
    if (const auto overtaken = takeWaiting())
        arrivals.push_back({*overtaken, std::chrono::milliseconds(0)});
    return arrivals;
}

QStringList malformedKinds()
{
    return {
        QStringLiteral("short"), QStringLiteral("magic"), QStringLiteral("tag"), QStringLiteral("length"),
        QStringLiteral("value")};
}

QByteArray malformedDatagram(int kind)
{
    constexpr quint32 anyKey = 1;
    QByteArray bytes = encodeUp(KeyReport{true, anyKey}, 0);
    constexpr quint16 unknownTag = 999;
    switch (kind) {
    case 0: // a head that is cut off
        bytes.truncate(ECHeadSize / 2);
        break;
    case 1:
        Wire::store<quint32>(ECDownMagic, bytes.data());
        break;
    case 2:
        Wire::store<quint16>(unknownTag, bytes.data() + ECHeadSize);
        break;
    case 3: // a value that is too long
        bytes.append("\0\0\0", 3);
        break;
    default: // a value that is too short
        bytes.chop(2);
        break;
    }
    return bytes;
}

} // namespace Orvane::ConsolePanel
