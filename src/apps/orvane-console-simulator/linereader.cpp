#include "linereader.h"

#include <cerrno>

#include <unistd.h>

LineReader::LineReader(int descriptor, std::function<void(const QString&)> line, std::function<void()> end)
    : m_nDescriptor(descriptor)
    , m_line(std::move(line))
    , m_end(std::move(end))
    , m_notifier(descriptor, QSocketNotifier::Read)
{
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { readSome(); });
}

void LineReader::readSome()
{
    char buffer[4096];
    const auto size = ::read(m_nDescriptor, buffer, sizeof(buffer));
    if (size < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (size > 0) {
        m_pending.append(buffer, int(size));
        for (int end = m_pending.indexOf('\n'); end >= 0; end = m_pending.indexOf('\n')) {
            const QString line = QString::fromUtf8(m_pending.left(end));
            m_pending.remove(0, end + 1);
            m_line(line);
        }
        return;
    }
    m_notifier.setEnabled(false);
    if (!m_pending.isEmpty())
        m_line(QString::fromUtf8(m_pending));
    m_end();
}
