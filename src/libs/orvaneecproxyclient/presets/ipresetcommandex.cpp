#include "ipresetcommandex.h"

#include "presetextensions_p.h"
#include "presetgroup_p.h"

namespace Orvane::ECProxy::Client {

IPresetCommandEx::IPresetCommandEx(QObject* parent)
    : Command(parent)
    , d(new Internal::IPresetCommandExPrivate)
{
}

IPresetCommandEx::~IPresetCommandEx()
{
    delete d;
}

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
    if (d->m_toldPage) {
        updateCurrentPageIndex(*d->m_toldPage);
        return;
    }
    const auto command = Internal::presetCommand();
    if (!command)
        return;
    // Another thread may turn the page and come here at the same time: the newer page stays.
    int page = 0;
    do {
        page = command->page();
        updateCurrentPageIndex(page);
    } while (page != command->page());
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
