#pragma once

#include <QLineEdit>

namespace Orvane::ConsoleHost {

class EventWriter;

/// What a field takes; more would be no number, and a stuck key should not fill the memory.
constexpr int MaxFieldCharacters = 64;

/// The field that the numeric keypad types into. Enter takes the text and leaves the field empty.
class TypingField : public QLineEdit {
    Q_OBJECT

public:
    explicit TypingField(EventWriter& events, QWidget* parent = nullptr);
};

/// Tells every change of a field's text as the event "field", under the field's object name.
void reportTextChanges(const QLineEdit& field, EventWriter& events);

} // namespace Orvane::ConsoleHost
