#pragma once

/// Captures of the wire: pcap files with an IPv4 and a UDP head before each datagram, as network analysers
/// open them. Bytes in, records out: nothing here touches a file but `loadCapture`.

#include <QByteArray>
#include <QString>

#include <chrono>
#include <variant>
#include <vector>

namespace Orvane::ConsolePanel {

/// One datagram of a capture.
struct CapturedDatagram {
    enum Direction { Down, Up }; ///< to the console, from the console
    Direction direction = Down;
    std::chrono::microseconds time{}; ///< since 1970, UTC
    QByteArray bytes;
};

/// What UDP over IPv4 carries at most.
constexpr int LargestDatagram = 65507;

/// What a capture file begins with.
QByteArray captureFileHead();

/// Appends one record of the file.
/// @return false, and nothing is appended, when there are more bytes than a datagram carries
bool appendCaptureRecord(
    CapturedDatagram::Direction direction, std::chrono::microseconds time, const char* bytes, int size,
    QByteArray& out);

struct Capture {
    std::vector<CapturedDatagram> datagrams; ///< as they stand in the file
    quint64 skipped = 0; ///< packets that are none of the console's, or not whole
    bool isCutOff = false; ///< the file ends within a record
};

/// Why a file is no capture.
struct CaptureFault {
    QString reason;
};

/// Reads a whole pcap file of either byte order, with times in micro- or nanoseconds, of raw IP, Ethernet or
/// one of the forms that `tcpdump -i any` writes. Takes the datagrams to the console's two ports and skips
/// every other packet. A file that ends early counts up to there. Reads nothing outside `file`.
std::variant<Capture, CaptureFault> readCapture(const QByteArray& file);

/// The same from a file, which must be smaller than 1 GiB.
std::variant<Capture, CaptureFault> loadCapture(const QString& path);

} // namespace Orvane::ConsolePanel
