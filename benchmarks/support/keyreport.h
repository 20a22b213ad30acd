#pragma once

#include "ecprotocol.h"

namespace Orvane::Benchmark {

/// The digit 1 of the example keyboard: what the benchmarks press.
constexpr quint32 PressedKey = 94;

/// The report of a key press as the console service sends it.
inline QByteArray keyPressDatagram(quint32 key = PressedKey)
{
    using namespace ECProxy::Client;
    constexpr int valueSize = sizeof(ECButtonOperState);
    QByteArray datagram(ECValueOffset + valueSize, '\0');
    Wire::Writer put(datagram.data());
    put(ECUpMagic);
    put(ECDownPacketType);
    put(ECProtocolVersionNumber);
    put(quint16(0)); // sequence
    put(quint16(ECTLSize + valueSize));
    put(quint16(ReportECButtonPressed));
    put(quint16(valueSize));
    put(key);
    put(quint8(Pressed));
    return datagram;
}

/// The value that the decoder hands on for such a report.
inline QByteArray keyPressValue(quint32 key = PressedKey)
{
    return keyPressDatagram(key).mid(ECProxy::Client::ECValueOffset);
}

} // namespace Orvane::Benchmark
