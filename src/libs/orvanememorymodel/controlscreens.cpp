#include "control_p.h"

#include "showclock_p.h"

#include <algorithm>
#include <cmath>

namespace Orvane::MemoryModel {

using ScreenState = BizModel::Screen::State;

/// Sets a value of the screen and announces it.
template <typename Member, typename T, typename Signal>
ControlResult Control::setOnScreen(
    const QString& device, const ScreenKey& screen, Member member, const T& value, Signal signal)
{
    return onScreen(device, screen, [&](Change& change, const auto& owner, const auto& present) {
        change.set(present->data(change).*member, value, signal, owner, present);
    });
}

ScreenKey Control::addScreen(const QString& device, ScreenType type, QString* reason)
{
    ScreenKey key{type, 0};
    const ControlResult result = onDevice(device, [&](Change& change, const auto& owner) {
        const std::shared_ptr<MemoryScreen> screen = owner->createScreen(change, type);
        const auto unused = findIn(
            owner->allOutputs(), [&](const auto& output) { return !owner->isOutputUsed(change, output); });
        if (unused)
            screen->data(change).outputs +=
                MemoryScreen::OutputPlace{unused, QRect(QPoint(0, 0), unused->size())};
        QString error;
        if (!owner->canAddScreen(change, screen, {}, error))
            return ControlResult::refused(error);
        owner->addScreen(change, screen);
        key = screen->key();
        return ControlResult::done();
    });
    if (reason)
        *reason = result.reason();
    return key;
}

ControlResult Control::removeScreen(const QString& device, ScreenKey screen)
{
    return onScreen(device, screen, [](Change& change, const auto& owner, const auto& present) {
        return ControlResult::of(owner->removeScreen(change, present), QStringLiteral("the screen is gone"));
    });
}

ControlResult Control::renameScreen(const QString& device, ScreenKey screen, const QString& name)
{
    return setOnScreen(device, screen, &MemoryScreen::Data::name, name, &DeviceList::signalScreenNameChanged);
}

ControlResult Control::moveScreen(const QString& device, ScreenKey screen, ScreenKey target)
{
    return onScreen(device, screen, [&target](Change& change, const auto& owner, const auto& present) {
        const std::shared_ptr<MemoryScreen> place = owner->screen(change, target);
        if (!place)
            return ControlResult::refused(QStringLiteral("there is no screen %1").arg(screenKeyText(target)));
        auto& screens = owner->data(change).screens;
        screens.move(screens.indexOf(present), screens.indexOf(place));
        change.announce(&DeviceList::signalScreenMoved, owner, present, place);
        return ControlResult::done();
    });
}

ControlResult Control::setScreenIndex(const QString& device, ScreenKey screen, int index)
{
    return onScreen(device, screen, [index](Change& change, const auto&, const auto& present) {
        return ControlResult::of(
            present->setUiScreenIndex(change, index), QStringLiteral("%1 is no place of a key").arg(index));
    });
}

ControlResult Control::selectScreens(const QString& device, const QList<ScreenKey>& screens)
{
    return onDevice(device, [&screens](Change& change, const auto& owner) {
        for (const ScreenKey& key : screens) {
            if (!owner->screen(change, key))
                return ControlResult::refused(
                    QStringLiteral("there is no screen %1").arg(screenKeyText(key)));
        }
        if (screens.size() > 1 && !owner->data(change).multiScreens)
            return ControlResult::refused(QStringLiteral("the device selects one screen at a time"));
        owner->selectScreens(
            change, [&](const auto& screen, bool) { return screens.contains(screen->key()); });
        return ControlResult::done();
    });
}

ControlResult Control::activateScreen(const QString& device, ScreenKey screen)
{
    return onScreen(device, screen, [](Change& change, const auto& owner, const auto& present) {
        owner->setActiveScreen(change, present);
    });
}

ControlResult Control::setScreenState(const QString& device, ScreenKey screen, ScreenState state)
{
    return onScreen(device, screen, [state](Change& change, const auto&, const auto& present) {
        if (state < ScreenState::Normal || state > ScreenState::MatchingPGM)
            return ControlResult::refused(QStringLiteral("there is no state %1").arg(int(state)));
        present->data(change).state = state;
        change.markChanged();
        return ControlResult::done();
    });
}

ControlResult Control::setEffectTime(const QString& device, ScreenKey screen, double seconds)
{
    return onScreen(device, screen, [seconds](Change& change, const auto& owner, const auto& present) {
        if (!(seconds >= 0.0 && seconds <= MaxEffectSeconds))
            return ControlResult::refused(
                QStringLiteral("a transition lasts 0 to %1 seconds").arg(MaxEffectSeconds));
        change.set(
            present->data(change).effectSeconds, seconds, &DeviceList::signalScreenEffectChanged, owner,
            present);
        return ControlResult::done();
    });
}

ControlResult Control::setEffectType(const QString& device, ScreenKey screen, BizModel::EffectType type)
{
    return setOnScreen(
        device, screen, &MemoryScreen::Data::effectType, type, &DeviceList::signalScreenEffectChanged);
}

ControlResult Control::setFreeze(const QString& device, ScreenKey screen, bool freeze)
{
    return setOnScreen(
        device, screen, &MemoryScreen::Data::freeze, freeze, &DeviceList::signalScreenPGMFreezeChanged);
}

ControlResult Control::setFTB(const QString& device, ScreenKey screen, bool fadeToBlack)
{
    return setOnScreen(
        device, screen, &MemoryScreen::Data::fadeToBlack, fadeToBlack, &DeviceList::signalScreenFTBChanged);
}

ControlResult Control::setPGMEdit(const QString& device, ScreenKey screen, bool edit)
{
    return onScreen(device, screen, [edit](Change& change, const auto& owner, const auto& present) {
        if (present->screenType() != ScreenType::RegularScreen)
            return ControlResult::refused(
                QStringLiteral("the program of regular screens only can be edited"));
        change.set(
            present->data(change).pgmEdit, edit, &DeviceList::signalScreenPGMEditChanged, owner, present);
        return ControlResult::done();
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
    const std::chrono::duration<double> elapsed = ShowClock::now() - state.transitionStart;
    const std::chrono::duration<double> whole = state.transitionTime;
    return std::clamp(elapsed / whole, 0.0, 1.0);
}

} // namespace Orvane::MemoryModel
