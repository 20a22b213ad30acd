#pragma once

#include <QLoggingCategory>

#include <cstdio>

namespace Orvane::Benchmark {

/// What becomes of the lines that trace a key's way. Warnings are on in both modes.
enum class LogMode {
    Disabled, ///< filtered out before their text is made
    Formatted, ///< made and handed to a message handler, which drops them
};

inline void setLogMode(LogMode mode)
{
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type == QtFatalMsg)
            std::fprintf(stderr, "%s\n", qUtf8Printable(text)); // Qt ends the process after it
    });
    QLoggingCategory::setFilterRules(
        mode == LogMode::Formatted ? QStringLiteral("default=true\norvane.*=true")
                                   : QStringLiteral("*.debug=false\n*.info=false"));
}

} // namespace Orvane::Benchmark
