#include "keyhistory.h"

#include "downdescription.h"

namespace Orvane::ConsolePanel {

namespace {
constexpr std::size_t KeptMessages = 5;
}

void KeyHistory::noteDown(Time time, const DownDatagram& datagram)
{
    if (const auto* led = std::get_if<Protocol::ECButtonColor>(&datagram.message))
        note(m_keys[led->ECKey], {time, datagram});
    else if (const auto* label = std::get_if<Protocol::ECOLEDText>(&datagram.message))
        note(m_labels[label->ECKey], {time, datagram});
}

void KeyHistory::noteUp(Time time, const KeyReport& report)
{
    note(m_keys[quint16(report.key)], {time, report});
}

QStringList KeyHistory::ofKey(quint16 key) const
{
    return lines(m_keys, key);
}

QStringList KeyHistory::ofLabel(quint16 label) const
{
    return lines(m_labels, label);
}

void KeyHistory::note(std::deque<Entry>& entries, Entry entry)
{
    entries.push_front(std::move(entry));
    if (entries.size() > KeptMessages)
        entries.pop_back();
}

QStringList KeyHistory::lines(const Entries& entries, quint16 number)
{
    QStringList out;
    const auto found = entries.find(number);
    if (found == entries.end())
        return out;
    for (const Entry& entry : found->second) {
        const bool isUp = std::holds_alternative<KeyReport>(entry.message);
        const QString text = isUp ? describe(UpMessage(std::get<KeyReport>(entry.message)))
                                  : describe(std::get<DownDatagram>(entry.message));
        out.append(QStringLiteral("%1 %2 %3")
                       .arg(double(entry.time.count()) / 1e6, 0, 'f', 3)
                       .arg(QLatin1Char(isUp ? '>' : '<'))
                       .arg(text));
    }
    return out;
}

} // namespace Orvane::ConsolePanel
