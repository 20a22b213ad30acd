#pragma once

#include <QLoggingCategory>

#include <atomic>

namespace Storm {

/// Takes the log while it lives, and knows from it how many of the library's timers run: a hold that came to
/// its end may still be at work on its own thread when its key was released long ago.
class TimerLog {
public:
    TimerLog()
        : m_former(qInstallMessageHandler(&TimerLog::take))
    {
        s_nRunning = 0;
    }
    ~TimerLog() { qInstallMessageHandler(m_former); }
    TimerLog(const TimerLog&) = delete;
    TimerLog& operator=(const TimerLog&) = delete;

    static bool isAnyRunning() { return s_nRunning != 0; }

private:
    static void take(QtMsgType, const QMessageLogContext&, const QString& line)
    {
        if (line.startsWith(QLatin1String("EC timer start")))
            ++s_nRunning;
        else if (line == QLatin1String("EC timer finished") || line == QLatin1String("EC timer terminate"))
            --s_nRunning;
    }

    inline static std::atomic<int> s_nRunning{0};
    const QtMessageHandler m_former;
};

} // namespace Storm
