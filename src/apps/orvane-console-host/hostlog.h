#pragma once

#include <QObject>
#include <QStringList>

#include <mutex>

namespace Orvane::ConsoleHost {

/// The process's log: every message goes to standard error and to the window's view. Exists once, from the
/// start of the program to its end.
class HostLog : public QObject {
    Q_OBJECT

public:
    /// @param isVerbose with the lines that every key leaves
    explicit HostLog(bool isVerbose);
    ~HostLog() override;

    /// Takes the lines that came since the last call. Of a flood only the last `MaxPendingLines` are kept.
    QStringList takeLines();

Q_SIGNALS:
    /// There are lines to take; told once until they are taken.
    void signalLinesPending();

private:
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& text);
    void append(const QString& line);

    static constexpr int MaxPendingLines = 500;

    // m_mutex guards m_pending. Messages come on any thread.
    std::mutex m_mutex;
    QStringList m_pending;
};

} // namespace Orvane::ConsoleHost
