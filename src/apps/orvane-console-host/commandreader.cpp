#include "commandreader.h"

#include <cerrno>
#include <unistd.h>

namespace Orvane::ConsoleHost {

CommandReader::CommandReader(QObject* parent)
    : QObject(parent)
    , m_notifier(STDIN_FILENO, QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, &CommandReader::read);
}

void CommandReader::read()
{
    char buffer[16 * 1024];
    const ssize_t count = ::read(STDIN_FILENO, buffer, sizeof buffer);
    if (count > 0) {
        take(QByteArray(buffer, int(count)));
        return;
    }
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    m_notifier.setEnabled(false);
    if (!m_line.isEmpty())
        finishLine();
    Q_EMIT signalEnd();
}

void CommandReader::take(const QByteArray& bytes)
{
    int begin = 0;
    while (begin < bytes.size()) {
        const int end = bytes.indexOf('\n', begin);
        const int length = (end < 0 ? bytes.size() : end) - begin;
        m_line.append(bytes.constData() + begin, qMin(length, MaxLineBytes - m_line.size()));
        if (end < 0)
            return;
        finishLine();
        begin = end + 1;
    }
}

void CommandReader::finishLine()
{
    const QByteArray line = std::exchange(m_line, QByteArray());
    Q_EMIT signalLine(line);
}

} // namespace Orvane::ConsoleHost
