#pragma once

#include "ecprotocol.h"

#include <algorithm>

namespace Orvane::ECProxy::Client::Internal {

/// What one datagram from the service says.
struct UpReport {
    enum Kind {
        InvalidHead, ///< does not begin with the magic of the service
        Nothing, ///< has the magic and no tag
        Report, ///< has a tag; the value may be empty or of any length
    };
    Kind kind = Nothing;
    quint32 head = 0; ///< its first four bytes, missing ones as 0
    eECUpMessageTag tag{}; ///< any number, not only the enumerators
    const char* value = nullptr; ///< into the datagram
    quint16 valueSize = 0;
};

/// Reads one datagram of any size, 0 included, and nothing beyond its end.
///
/// The value is all that follows the tag and its length field: that field and the rest of the head are not
/// looked at. Of a datagram that ends within the tag, the missing bytes count as 0.
inline UpReport parseUpDatagram(const char* bytes, std::size_t size)
{
    UpReport report;
    char begin[ECValueOffset] = {};
    if (size > 0)
        std::memcpy(begin, bytes, std::min(size, sizeof(begin)));

    report.head = Wire::load<quint32>(begin);
    if (report.head != ECUpMagic) {
        report.kind = UpReport::InvalidHead;
    } else if (size > std::size_t(ECHeadSize)) {
        report.kind = UpReport::Report;
        report.tag = static_cast<eECUpMessageTag>(Wire::load<quint16>(begin + ECHeadSize));
        if (size > sizeof(begin)) {
            report.value = bytes + sizeof(begin);
            report.valueSize = static_cast<quint16>(size - sizeof(begin)); // a length of 16 bits, by rule
        }
    }
    return report;
}

} // namespace Orvane::ECProxy::Client::Internal
