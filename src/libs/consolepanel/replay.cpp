#include "replay.h"

#include <algorithm>

namespace Orvane::ConsolePanel {

namespace {

/// The first number of a sender that begins.
constexpr quint16 FirstSequence = 1;

bool isReport(const CapturedDatagram& datagram)
{
    return datagram.direction == CapturedDatagram::Up;
}

/// Whether the capture has all that the library ever sent: its numbers begin with the first one.
Knowledge knowledgeOf(const std::vector<CapturedDatagram>& datagrams)
{
    const auto first = std::find_if_not(datagrams.begin(), datagrams.end(), isReport);
    if (first == datagrams.end())
        return Knowledge::Partial;
    const auto read = decodeDown(first->bytes.constData(), first->bytes.size());
    const auto* const request = std::get_if<DownDatagram>(&read);
    return request && request->sequence == FirstSequence ? Knowledge::Complete : Knowledge::Partial;
}

} // namespace

Replay::Replay(Capture capture)
    : m_datagrams(std::move(capture.datagrams))
    , m_nReports(std::size_t(std::count_if(m_datagrams.begin(), m_datagrams.end(), isReport)))
    , m_knowledge(knowledgeOf(m_datagrams))
{
    // A capturing program may write two packets in the wrong order; time does not go back for that.
    for (std::size_t i = 1; i < m_datagrams.size(); ++i)
        m_datagrams[i].time = std::max(m_datagrams[i].time, m_datagrams[i - 1].time);
    const auto last = std::find_if(m_datagrams.rbegin(), m_datagrams.rend(), isReport);
    if (last != m_datagrams.rend())
        m_tail = m_datagrams.back().time - last->time;
    takeAnswers();
    if (!atEnd())
        m_first = m_datagrams[m_nNext].time;
}

void Replay::advance()
{
    ++m_nPlayed;
    ++m_nNext;
    takeAnswers();
}

void Replay::takeAnswers()
{
    for (; m_nNext < m_datagrams.size() && !isReport(m_datagrams[m_nNext]); ++m_nNext) {
        const QByteArray& bytes = m_datagrams[m_nNext].bytes;
        m_recorded.receive(bytes.constData(), bytes.size());
    }
}

std::vector<ConsoleDifference> Replay::differences(const ConsoleState& shown) const
{
    return ConsolePanel::differences(m_recorded.state(), m_knowledge, shown);
}

} // namespace Orvane::ConsolePanel
