#include "typingfield.h"

#include "eventwriter.h"

namespace Orvane::ConsoleHost {

TypingField::TypingField(EventWriter& events, QWidget* parent)
    : QLineEdit(parent)
{
    setObjectName(QStringLiteral("field"));
    setMaxLength(MaxFieldCharacters);
    setPlaceholderText(QStringLiteral("The keypad types here"));
    reportTextChanges(*this, events);
    connect(this, &QLineEdit::returnPressed, this, [this, &events] {
        events.writeEvent(QStringLiteral("entered"), {{QStringLiteral("text"), text()}});
        clear();
    });
}

void reportTextChanges(const QLineEdit& field, EventWriter& events)
{
    QObject::connect(&field, &QLineEdit::textChanged, &events, [&field, &events](const QString& text) {
        events.writeEvent(
            QStringLiteral("field"),
            {{QStringLiteral("name"), field.objectName()}, {QStringLiteral("text"), text}});
    });
}

} // namespace Orvane::ConsoleHost
