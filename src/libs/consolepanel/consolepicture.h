#pragma once

#include "consolelayout.h"
#include "consolerecorder.h"

#include <QStringList>

namespace Orvane::ConsolePanel {

/// Draws the console for a terminal: the groups of the layout with each key in its colour and its label
/// above it, then the T-Bar, the locks, the lights and whatever else it was told. Keys and labels that are
/// not in the layout are shown in a group of their own.
class ConsolePicture {
public:
    struct Options {
        bool colour = true; ///< 24-bit ANSI colours; else the colours' names
        int columns = 100; ///< width of the terminal
    };

    ConsolePicture(const ConsoleLayout& layout, const ConsoleRecorder& console, const Options& options);

    /// The lines without their ends.
    QStringList lines() const;
    /// What the console was told that no key, label or light shows: source, inputs, time, network, files.
    QStringList factLines() const;

private:
    void drawGroup(const ConsoleLayout::Group& group, QStringList& out) const;
    QString labelsOutsideLayout() const;
    QString labelCell(const ConsoleLayout::Key& key) const;
    QString keyCell(quint16 number) const;
    QString tbarLine() const;
    QString lightsLine() const;
    QString heading(const QString& text) const;

    const ConsoleLayout& m_layout;
    const ConsoleRecorder& m_console;
    Options m_options;
};

/// Counters in one line: what came, what could not be read, what the sequence numbers tell.
QString counterText(const ConsoleRecorder& console);

} // namespace Orvane::ConsolePanel
