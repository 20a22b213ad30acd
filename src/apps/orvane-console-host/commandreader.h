#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

namespace Orvane::ConsoleHost {

/// Splits standard input into lines as they arrive, without ever waiting for it.
class CommandReader : public QObject {
    Q_OBJECT

public:
    explicit CommandReader(QObject* parent = nullptr);

Q_SIGNALS:
    /// A line without its end. Longer ones than `MaxLineBytes` arrive cut, as one line.
    void signalLine(const QByteArray& line);
    /// Nothing further comes.
    void signalEnd();

private:
    void read();
    void take(const QByteArray& bytes);
    void finishLine();

    static constexpr int MaxLineBytes = 1024 * 1024;

    QSocketNotifier m_notifier;
    QByteArray m_line;
};

} // namespace Orvane::ConsoleHost
