#include "sequencewatch.h"

namespace Orvane::ConsolePanel {

namespace {
constexpr int SequenceCount = 65535; // 65535 itself is never sent
constexpr int FirstSequence = 1;
/// More skipped numbers than this are only counted.
constexpr std::size_t RememberedLimit = 4096;
} // namespace

void SequenceWatch::add(quint16 sequence)
{
    if (!m_last) {
        m_last = sequence;
        return;
    }
    const int distance = (sequence - *m_last + SequenceCount) % SequenceCount;
    if (distance == 1) {
        m_last = sequence;
        m_nForgotten += m_missing.erase(sequence); // the number was skipped a whole round ago
        return;
    }
    if (m_missing.erase(sequence) != 0) {
        ++m_nLate;
        return;
    }
    if (sequence == FirstSequence) {
        ++m_nRestarts;
        m_nForgotten += m_missing.size();
        m_missing.clear();
        m_last = sequence;
        return;
    }
    if (distance == 0 || distance > SequenceCount / 2) {
        ++m_nRepeated;
        return;
    }
    for (int i = 1; i < distance; ++i) {
        const auto skipped = quint16((*m_last + i) % SequenceCount);
        if (m_missing.size() >= RememberedLimit || !m_missing.insert(skipped).second)
            ++m_nForgotten;
    }
    m_last = sequence;
}

} // namespace Orvane::ConsolePanel
