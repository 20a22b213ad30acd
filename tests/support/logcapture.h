#pragma once

#include <QString>

namespace Orvane::TestSupport {

/// Takes every log line of the process while it lives; one at a time. Any thread may log and ask.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    /// How many lines hold the text.
    int count(const QString& text) const;
    bool contains(const QString& text) const { return count(text) > 0; }
    /// Runs the event loop until a line holds the text, at most `timeoutMs`.
    bool waitFor(const QString& text, int timeoutMs = 2000) const;
    /// All lines, one a row: for a test's own message.
    QString all() const;
    void clear();
};

} // namespace Orvane::TestSupport
