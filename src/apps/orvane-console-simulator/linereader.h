#pragma once

#include <QByteArray>
#include <QSocketNotifier>
#include <QString>

#include <functional>

/// Reads lines from a descriptor as they come: a terminal, a pipe or a file. Needs an event loop.
class LineReader {
public:
    /// `line` is called for every line without its end, `end` once after the last one.
    LineReader(int descriptor, std::function<void(const QString&)> line, std::function<void()> end);

private:
    void readSome();

    int m_nDescriptor;
    std::function<void(const QString&)> m_line;
    std::function<void()> m_end;
    QByteArray m_pending; ///< begun, its end has not come yet
    QSocketNotifier m_notifier;
};
