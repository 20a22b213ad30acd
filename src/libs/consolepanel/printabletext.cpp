#include "printabletext.h"

namespace Orvane::ConsolePanel {

QString printable(const QString& text)
{
    QString out;
    out.reserve(text.size());
    for (const QChar character : text) {
        if (character.category() == QChar::Other_Control)
            out += QStringLiteral("\\x%1").arg(character.unicode(), 2, 16, QLatin1Char('0'));
        else
            out += character;
    }
    return out;
}

} // namespace Orvane::ConsolePanel
