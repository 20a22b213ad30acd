#pragma once

#include <QByteArray>
#include <QSocketNotifier>

#include <functional>

namespace Orvane::CommandLine {

/// Reads lines from a descriptor as they come, a terminal, a pipe or a file, without ever waiting for it.
/// Needs an event loop.
class LineReader {
public:
    /// Longer lines arrive cut, as one line.
    static constexpr int MaxLineBytes = 1024 * 1024;

    /// `line` is called for every line without its end, `end` once after the last one.
    LineReader(int descriptor, std::function<void(const QByteArray&)> line, std::function<void()> end);

private:
    void read();
    void take(const QByteArray& bytes);
    void finishLine();

    const std::function<void(const QByteArray&)> m_line;
    const std::function<void()> m_end;
    QSocketNotifier m_notifier;
    QByteArray m_begun; ///< its end has not come yet
};

} // namespace Orvane::CommandLine
