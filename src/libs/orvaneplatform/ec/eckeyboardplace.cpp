#include "ec/eckeyboardplace_p.h"

namespace Orvane::Internal {

QString quoted(const QString& text)
{
    constexpr int shownCharacters = 40;
    QString part = text.left(shownCharacters);
    for (QChar& c : part) {
        if (c.category() == QChar::Other_Control)
            c = QChar::ReplacementCharacter;
    }
    if (text.size() > shownCharacters)
        part += QChar(0x2026); // an ellipsis
    return QLatin1Char('"') + part + QLatin1Char('"');
}

QString KeyboardPlace::toString() const
{
    if (group == 0)
        return QStringLiteral("keyboard");
    QString text = QStringLiteral("group %1").arg(group);
    if (!groupName.isEmpty())
        text += QLatin1Char(' ') + quoted(groupName);
    if (key > 0)
        text += QStringLiteral(", key %1").arg(key);
    if (ecKey)
        text += QStringLiteral(" (ECKey %1)").arg(*ecKey);
    if (label)
        text += QStringLiteral(", label");
    return text;
}

} // namespace Orvane::Internal
