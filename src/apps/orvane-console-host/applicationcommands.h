#pragma once

#include <QMap>
#include <QString>

class QWidget;

namespace Orvane::Notices {
class NoticePresenter;
}

namespace Orvane::ConsoleHost {

class CommandTable;
class DviSignals;
class EventWriter;
class TypingField;

/// What the commands need of the application; all of it outlives the command table.
struct ApplicationParts {
    EventWriter& events;
    TypingField& field;
    Notices::NoticePresenter& notices;
    const DviSignals& dviSignals;
    QWidget& console; ///< the on-screen one
    /// Those that pictures can be taken of, by their names in commands; the host's own has none when there is
    /// no window.
    QMap<QString, QWidget*> windows;
};

/// Adds the commands that act on the application itself: dialogs, the property that silences the console,
/// language, quitting.
void addApplicationCommands(CommandTable& table, const ApplicationParts& parts);

} // namespace Orvane::ConsoleHost
