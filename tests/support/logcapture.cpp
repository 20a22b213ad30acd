#include "logcapture.h"

#include <QStringList>
#include <QTest>

#include <algorithm>
#include <mutex>

namespace Orvane::TestSupport {

namespace {

// s_mutex guards s_lines.
std::mutex s_mutex;
QStringList s_lines;
QtMessageHandler s_previous = nullptr;

void keep(QtMsgType, const QMessageLogContext&, const QString& line)
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    s_lines.append(line);
}

} // namespace

LogCapture::LogCapture()
{
    clear();
    s_previous = qInstallMessageHandler(keep);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(s_previous);
}

int LogCapture::count(const QString& text) const
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    return int(std::count_if(
        s_lines.cbegin(), s_lines.cend(), [&](const QString& line) { return line.contains(text); }));
}

bool LogCapture::waitFor(const QString& text, int timeoutMs) const
{
    return QTest::qWaitFor([&] { return contains(text); }, timeoutMs);
}

QString LogCapture::all() const
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    return s_lines.join(QLatin1Char('\n'));
}

void LogCapture::clear()
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    s_lines.clear();
}

} // namespace Orvane::TestSupport
