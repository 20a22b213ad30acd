#include "statetext.h"

#include "printabletext.h"

namespace Orvane::ConsolePanel {

using namespace ECProxy::Client;

QString nothingYet()
{
    return QStringLiteral("nothing came");
}

QString onOffText(bool on)
{
    return on ? QStringLiteral("on") : QStringLiteral("off");
}

QString lookText(const KeyState* key)
{
    if (!key)
        return nothingYet();
    if (!key->isLit)
        return QStringLiteral("dark");
    return QStringLiteral("%1%2, brightness %3")
        .arg(
            colourText(key->colour), key->buttonState == Flashing ? QStringLiteral(" flashing") : QString(),
            QString::number(key->brightness));
}

QString lookText(const LabelState* label)
{
    return label ? QLatin1Char('"') + printable(QString::fromUtf8(label->text)) + QLatin1Char('"')
                 : nothingYet();
}

QString lookText(const LightState* light)
{
    return light ? QStringLiteral("%1 %2").arg(onOffText(light->isOn)).arg(light->brightness) : nothingYet();
}

QString lookText(const ECTBarValue* level)
{
    return level
        ? QStringLiteral("level %1 direction %2").arg(quint32(level->Value)).arg(level->IsBottomToTop)
        : nothingYet();
}

} // namespace Orvane::ConsolePanel
