#include "ipresetcommandex.h"

#include "ipresetcommandex_p.h"
#include "log_p.h"

namespace Orvane::ECProxy::Client {

IPresetCommandEx::IPresetCommandEx(QObject* parent)
    : Command(parent)
    , d(std::make_unique<Internal::IPresetCommandExPrivate>())
{
}

IPresetCommandEx::~IPresetCommandEx() = default;

bool IPresetCommandEx::selectPresetPressed(const quint32&)
{
    return false;
}

bool IPresetCommandEx::selectPresetRelease(const quint32&)
{
    return false;
}

bool IPresetCommandEx::removeSelectedPresetPressed(const quint32&)
{
    return false;
}

bool IPresetCommandEx::removeSelectedPresetRelease(const quint32&)
{
    return false;
}

bool IPresetCommandEx::clearPresetsPressed()
{
    return false;
}

bool IPresetCommandEx::clearPresetsRelease(const quint32&)
{
    return false;
}

bool IPresetCommandEx::savePresetPressed(const quint32&)
{
    return false;
}

bool IPresetCommandEx::savePresetRelease(const quint32&)
{
    return false;
}

bool IPresetCommandEx::cutPressed(const quint32&)
{
    return false;
}

bool IPresetCommandEx::takePressed(const quint32&)
{
    return false;
}

bool IPresetCommandEx::cutRelease(const quint32&)
{
    return false;
}

bool IPresetCommandEx::takeRelease(const quint32&)
{
    return false;
}

void IPresetCommandEx::ecTBarChanged(const ECTBarValue&) { }

bool IPresetCommandEx::isBindProgram(const quint32&)
{
    return false;
}

void IPresetCommandEx::updatePageIndex()
{
    if (d->m_toldPage)
        updateCurrentPageIndex(*d->m_toldPage);
    else
        ecWarning(lcPaint, "Find preset command data error.");
}

bool IPresetCommandEx::isAllowedKeyPressed(const quint16&)
{
    return false;
}

bool IPresetCommandEx::isAllowedKeyReleased(const quint16&)
{
    return false;
}

void IPresetCommandEx::updateSelectModeButtonConfig() { }

void IPresetCommandEx::slotECButtonPressed(const quint32&) { }

void IPresetCommandEx::slotECButtonRelease(const quint32&) { }

} // namespace Orvane::ECProxy::Client
