#include "linereader.h"

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace Orvane::CommandLine {

LineReader::LineReader(int descriptor, std::function<void(const QByteArray&)> line, std::function<void()> end)
    : m_line(std::move(line))
    , m_end(std::move(end))
    , m_notifier(descriptor, QSocketNotifier::Read)
{
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { read(); });
}

void LineReader::read()
{
    char buffer[16 * 1024];
    const ssize_t count = ::read(int(m_notifier.socket()), buffer, sizeof buffer);
    if (count > 0) {
        take(QByteArray(buffer, int(count)));
        return;
    }
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    m_notifier.setEnabled(false);
    if (!m_begun.isEmpty())
        finishLine();
    m_end();
}

void LineReader::take(const QByteArray& bytes)
{
    int begin = 0;
    while (begin < bytes.size()) {
        const int end = bytes.indexOf('\n', begin);
        const int length = (end < 0 ? bytes.size() : end) - begin;
        m_begun.append(bytes.constData() + begin, qMin(length, MaxLineBytes - m_begun.size()));
        if (end < 0)
            return;
        finishLine();
        begin = end + 1;
    }
}

void LineReader::finishLine()
{
    const QByteArray line = std::exchange(m_begun, QByteArray());
    m_line(line);
}

} // namespace Orvane::CommandLine
