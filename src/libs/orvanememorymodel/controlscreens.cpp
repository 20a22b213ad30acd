#include "control_p.h"

#include <algorithm>
#include <cmath>

namespace Orvane::MemoryModel {

using BizModel::DeviceList;
using ScreenState = BizModel::Screen::State;

ScreenKey Control::addScreen(const QString& device, ScreenType type)
{
    ScreenKey key{type, 0};
    onDevice(device, [&](Change& change, const auto& owner) {
        const std::shared_ptr<MemoryScreen> screen = owner->createScreen(change, type);
        const auto& outputs = owner->allOutputs();
        const auto unused = std::find_if(outputs.cbegin(), outputs.cend(), [&](const auto& output) {
            return !owner->isOutputUsed(change, output);
        });
        if (unused != outputs.cend()) {
            const QRect rect(QPoint(0, 0), (*unused)->size());
            screen->data(change).outputs += MemoryScreen::OutputPlace{*unused, rect};
        }
        QString error;
        if (!owner->canAddScreen(change, screen, {}, error))
            return false;
        owner->addScreen(change, screen);
        key = screen->key();
        return true;
    });
    return key;
}

bool Control::removeScreen(const QString& device, ScreenKey screen)
{
    return onScreen(device, screen, [](Change& change, const auto& owner, const auto& present) {
        return owner->removeScreen(change, present);
    });
}

bool Control::renameScreen(const QString& device, ScreenKey screen, const QString& name)
{
    return onScreen(device, screen, [&name](Change& change, const auto& owner, const auto& present) {
        return setAndAnnounce(
            change, present->data(change).name, name, owner, std::shared_ptr<BizModel::Screen>(present),
            &DeviceList::signalScreenNameChanged);
    });
}

bool Control::moveScreen(const QString& device, ScreenKey screen, ScreenKey target)
{
    return onScreen(device, screen, [&target](Change& change, const auto& owner, const auto& present) {
        const std::shared_ptr<MemoryScreen> place = owner->screen(change, target);
        if (!place)
            return false;
        auto& screens = owner->data(change).screens;
        screens.move(screens.indexOf(present), screens.indexOf(place));
        change.announce([device = std::weak_ptr<MemoryDevice>(owner),
                         moved = std::weak_ptr<MemoryScreen>(present),
                         place = std::weak_ptr<MemoryScreen>(place)](MemoryDeviceList& list) {
            Q_EMIT list.signalScreenMoved(device, moved, place);
        });
        return true;
    });
}

bool Control::setScreenIndex(const QString& device, ScreenKey screen, int index)
{
    return onScreen(device, screen, [index](Change& change, const auto&, const auto& present) {
        return present->setUiScreenIndex(change, index);
    });
}

bool Control::selectScreens(const QString& device, const QList<ScreenKey>& screens)
{
    return onDevice(device, [&screens](Change& change, const auto& owner) {
        const bool known = std::all_of(screens.cbegin(), screens.cend(), [&](const ScreenKey& key) {
            return owner->screen(change, key) != nullptr;
        });
        if (!known || (screens.size() > 1 && !owner->data(change).multiScreens))
            return false;
        bool changed = false;
        for (const auto& screen : std::as_const(owner->data(change).screens)) {
            const bool selected = screens.contains(screen->key());
            changed |= std::exchange(screen->data(change).selected, selected) != selected;
        }
        if (changed)
            owner->announceSelectedScreens(change);
        return true;
    });
}

bool Control::activateScreen(const QString& device, ScreenKey screen)
{
    return onScreen(device, screen, [](Change& change, const auto& owner, const auto& present) {
        owner->setActiveScreen(change, present);
        return true;
    });
}

bool Control::setScreenState(const QString& device, ScreenKey screen, ScreenState state)
{
    return onScreen(device, screen, [state](Change& change, const auto&, const auto& present) {
        if (state < ScreenState::Normal || state > ScreenState::MatchingPGM)
            return false;
        present->data(change).state = state;
        change.markChanged();
        return true;
    });
}

bool Control::setEffectTime(const QString& device, ScreenKey screen, double seconds)
{
    return onScreen(device, screen, [seconds](Change& change, const auto& owner, const auto& present) {
        return seconds >= 0.0 && seconds <= MaxEffectSeconds
            && setAndAnnounce(
                   change, present->data(change).effectSeconds, seconds, owner,
                   std::shared_ptr<BizModel::Screen>(present), &DeviceList::signalScreenEffectChanged);
    });
}

bool Control::setEffectType(const QString& device, ScreenKey screen, BizModel::EffectType type)
{
    return onScreen(device, screen, [type](Change& change, const auto& owner, const auto& present) {
        return setAndAnnounce(
            change, present->data(change).effectType, type, owner, std::shared_ptr<BizModel::Screen>(present),
            &DeviceList::signalScreenEffectChanged);
    });
}

bool Control::setFreeze(const QString& device, ScreenKey screen, bool freeze)
{
    return onScreen(device, screen, [freeze](Change& change, const auto& owner, const auto& present) {
        return setAndAnnounce(
            change, present->data(change).freeze, freeze, owner, std::shared_ptr<BizModel::Screen>(present),
            &DeviceList::signalScreenPGMFreezeChanged);
    });
}

bool Control::setFTB(const QString& device, ScreenKey screen, bool fadeToBlack)
{
    return onScreen(device, screen, [fadeToBlack](Change& change, const auto& owner, const auto& present) {
        return setAndAnnounce(
            change, present->data(change).fadeToBlack, fadeToBlack, owner,
            std::shared_ptr<BizModel::Screen>(present), &DeviceList::signalScreenFTBChanged);
    });
}

bool Control::setPGMEdit(const QString& device, ScreenKey screen, bool edit)
{
    return onScreen(device, screen, [edit](Change& change, const auto& owner, const auto& present) {
        return present->screenType() == ScreenType::RegularScreen
            && setAndAnnounce(
                   change, present->data(change).pgmEdit, edit, owner,
                   std::shared_ptr<BizModel::Screen>(present), &DeviceList::signalScreenPGMEditChanged);
    });
}

QList<ScreenKey> Control::viewingScreens(const QString& device) const
{
    const Guard guard(*m_pHub);
    QList<ScreenKey> keys;
    const std::shared_ptr<const MemoryDevice> owner = m_list.device(guard, device);
    if (!owner)
        return keys;
    for (const std::weak_ptr<MemoryScreen>& viewing : owner->data(guard).viewingScreens) {
        const std::shared_ptr<MemoryScreen> screen = viewing.lock();
        if (screen && owner->screen(guard, screen->key()) == screen)
            keys += screen->key();
    }
    return keys;
}

double Control::transitionProgress(const QString& device, ScreenKey screen) const
{
    const Guard guard(*m_pHub);
    const std::shared_ptr<MemoryDevice> owner = m_list.device(guard, device);
    const std::shared_ptr<MemoryScreen> present = owner ? owner->screen(guard, screen) : nullptr;
    if (!present)
        return 0.0;
    const MemoryScreen::Data& state = std::as_const(*present).data(guard);
    if (state.state == ScreenState::Tbar_taking)
        return state.tbarProgress;
    if (state.state != ScreenState::Taking || state.transitionTime.count() == 0)
        return 0.0;
    const std::chrono::duration<double> elapsed = MemoryScreen::Clock::now() - state.transitionStart;
    const std::chrono::duration<double> whole = state.transitionTime;
    return std::clamp(elapsed / whole, 0.0, 1.0);
}

} // namespace Orvane::MemoryModel
