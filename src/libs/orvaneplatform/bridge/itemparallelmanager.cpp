#include "bridge/itemparallelmanager.h"

#include "bridge/announce_p.h"
#include "bridge/parallelround_p.h"

#include <algorithm>
#include <utility>

namespace Orvane::Bridge {

using namespace ParallelControl;
using State = BizModel::Screen::State;
using Internal::announce;

namespace {

std::shared_ptr<DeviceItem> itemOf(const ParallelTask& task)
{
    return std::dynamic_pointer_cast<DeviceItem>(deviceOf(task).lock());
}

bool isIdle(const ScreenItem& screen)
{
    return screen.state() == State::Normal || screen.state() == State::Resource_out;
}

/// Ends a transition whatever came of it: no screen may stay busy.
Completion transitionEnd(const ItemParallelManager::ScreenList& screens, const OpenRequest& end)
{
    return [screens, end](bool ok, const QString& text) {
        QList<std::weak_ptr<BizModel::Screen>> changed;
        for (const std::shared_ptr<ScreenItem>& screen : screens) {
            screen->setState(State::Normal);
            changed += screen;
        }
        if (ok)
            announce(&BizModel::DeviceList::signalDeviceScreenLayersChanged, changed, 0);
        end.finish(ok, text);
    };
}

} // namespace

ItemParallelManager::ItemParallelManager() = default;
ItemParallelManager::~ItemParallelManager() = default;

void ItemParallelManager::begin(const ParallelTask& task)
{
    const State busy = busyState(task);
    Begun begun{task.index(), itemOf(task), {}};
    if (busy == State::Normal || !begun.device)
        return;
    const std::lock_guard lock(m_mutex); // two presses must not both find a screen idle
    const ScreenList selected = begun.device->selectedScreens();
    for (const std::shared_ptr<ScreenItem>& screen : selected) {
        if (!isIdle(*screen))
            continue;
        screen->setState(busy);
        begun.screens += screen;
    }
    m_begun.push_back(begun);
}

/// The screens of the oldest task of its kind.
ItemParallelManager::ScreenList ItemParallelManager::takeBegun(
    const ParallelTask& task, const std::shared_ptr<DeviceItem>& device)
{
    const std::lock_guard lock(m_mutex);
    const auto begun = std::find_if(m_begun.begin(), m_begun.end(), [&](const Begun& each) {
        return each.kind == task.index() && each.device == device;
    });
    if (begun == m_begun.end())
        return {};
    const ScreenList screens = begun->screens;
    m_begun.erase(begun);
    return screens;
}

void ItemParallelManager::perform(const ParallelTask& task, OpenRequest end)
{
    const auto device = itemOf(task);
    if (!device)
        return void(end.fail(QStringLiteral("The device is gone.")));
    const bool isTransition = busyState(task) != State::Normal;
    const ScreenList screens = isTransition ? takeBegun(task, device) : device->selectedScreens();
    const bool needsScreens = !std::holds_alternative<ParallelSetSwapStatus>(task)
        && !std::holds_alternative<ParallelSetLoadToPresetPGMStatus>(task);
    if (needsScreens && screens.isEmpty())
        return void(end.fail(QStringLiteral("No screen that is idle is selected.")));
    if (isTransition)
        performTransition(task, screens, OpenRequest(taskName(task), transitionEnd(screens, end)));
    else
        performFlag(task, device, screens, end);
}

void ItemParallelManager::performTransition(
    const ParallelTask& task, const ScreenList& screens, const OpenRequest& end)
{
    if (std::holds_alternative<ParallelTakeScreen>(task))
        take(screens, end);
    else if (std::holds_alternative<ParallelCutScreen>(task))
        cut(screens, end);
    else
        match(screens, end);
}

void ItemParallelManager::performFlag(
    const ParallelTask& task, const std::shared_ptr<DeviceItem>& device, const ScreenList& screens,
    const OpenRequest& end)
{
    // Ends the request after the change that a success makes.
    const auto then = [&](auto change) {
        return OpenRequest(taskName(task), [change, end](bool ok, const QString& text) {
            if (ok)
                change();
            end.finish(ok, text);
        });
    };
    const auto onScreens = [&](void (ScreenItem::*set)(bool), bool on) {
        return then([screens, set, on] {
            for (const std::shared_ptr<ScreenItem>& screen : screens)
                ((*screen).*set)(on);
        });
    };
    if (const auto* frozen = std::get_if<ParallelFreezeScreen>(&task)) {
        freeze(screens, frozen->freeze, onScreens(&ScreenItem::setFrozen, frozen->freeze));
    } else if (const auto* black = std::get_if<ParallelFTBScreen>(&task)) {
        fadeToBlack(screens, black->fadeToBlack, onScreens(&ScreenItem::setFadedToBlack, black->fadeToBlack));
    } else if (const auto* swap = std::get_if<ParallelSetSwapStatus>(&task)) {
        setSwap(*device, swap->swap, then([device, on = swap->swap] { device->setSwap(on); }));
    } else if (const auto* target = std::get_if<ParallelSetLoadToPresetPGMStatus>(&task)) {
        const bool on = target->status == BizModel::Enum::Device::LoadToPGM;
        setLoadToProgram(*device, on, then([device, on] { device->setLoadToProgram(on); }));
    }
}

namespace {
const QString notOffered = QStringLiteral("The device does not do this.");
}

void ItemParallelManager::take(const ScreenList&, OpenRequest end)
{
    end.fail(notOffered);
}

void ItemParallelManager::cut(const ScreenList&, OpenRequest end)
{
    end.fail(notOffered);
}

void ItemParallelManager::match(const ScreenList&, OpenRequest end)
{
    end.fail(notOffered);
}

void ItemParallelManager::freeze(const ScreenList&, bool, OpenRequest end)
{
    end.fail(notOffered);
}

void ItemParallelManager::fadeToBlack(const ScreenList&, bool, OpenRequest end)
{
    end.fail(notOffered);
}

void ItemParallelManager::setSwap(DeviceItem&, bool, OpenRequest end)
{
    end.fail(notOffered);
}

void ItemParallelManager::setLoadToProgram(DeviceItem&, bool, OpenRequest end)
{
    end.fail(notOffered);
}

} // namespace Orvane::Bridge
