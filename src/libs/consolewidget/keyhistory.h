#pragma once

#include "downmessage.h"
#include "upmessage.h"

#include <QStringList>

#include <chrono>
#include <deque>
#include <map>

namespace Orvane::ConsolePanel {

/// The last messages about each key and label, for whoever asks; kept as they came, so that noting one costs
/// next to nothing.
class KeyHistory {
public:
    using Time = std::chrono::microseconds;

    void noteDown(Time time, const DownDatagram& datagram);
    void noteUp(Time time, const KeyReport& report);

    /// The newest first, a line each, with the seconds since the start.
    QStringList ofKey(quint16 key) const;
    QStringList ofLabel(quint16 label) const;

private:
    struct Entry {
        Time time{};
        std::variant<DownDatagram, KeyReport> message;
    };
    using Entries = std::map<quint16, std::deque<Entry>>;

    static void note(std::deque<Entry>& entries, Entry entry);
    static QStringList lines(const Entries& entries, quint16 number);

    Entries m_keys;
    Entries m_labels;
};

} // namespace Orvane::ConsolePanel
