#include "screencontroller.h"

#include "operationtext.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Orvane::MemoryModel {

namespace {

template <typename Value>
QString valuesText(const QList<std::pair<std::weak_ptr<BizModel::Screen>, Value>>& values)
{
    QStringList parts;
    for (const auto& value : values)
        parts += QStringLiteral("%1 value=%2").arg(screenText(value.first)).arg(value.second);
    return parts.join(QLatin1Char(' '));
}

void announceEffect(Change& change, const std::shared_ptr<MemoryScreen>& screen)
{
    change.announce([device = screen->device(), screen = std::weak_ptr<MemoryScreen>(screen)](
                        ModelSignals& list) { Q_EMIT list.signalScreenEffectChanged(device, screen); });
}

} // namespace

ScreenController::ScreenController(
    std::shared_ptr<ModelHub> hub, MemoryDeviceList& list, Processor& processor, ScreenType type,
    std::weak_ptr<BizModel::Device> device)
    : m_pHub(std::move(hub))
    , m_list(list)
    , m_processor(processor)
    , m_type(type)
    , m_pDevice(std::move(device))
{
}

bool ScreenController::setSelected(
    const Screens& screens, BizModel::SelectedType mode, bool notify, bool sendToDevice)
{
    const QString arguments = QStringLiteral("%1 mode=%2 notify=%3 send=%4")
                                  .arg(screensText(screens))
                                  .arg(int(mode))
                                  .arg(int(notify))
                                  .arg(int(sendToDevice));
    if (!start(Operation::SetScreensSelected, arguments))
        return false;
    Change change(*m_pHub);
    const MemoryDevice::Screens wanted = this->screens(change, screens);
    const std::shared_ptr<MemoryDevice> owner = device(change);
    if (!owner || wanted.isEmpty() || (wanted.size() > 1 && !owner->data(change).multiScreens))
        return false;
    const bool replaces = mode == BizModel::SelectedType::Cover || !owner->data(change).multiScreens;
    bool changed = false;
    for (const std::shared_ptr<MemoryScreen>& screen : std::as_const(owner->data(change).screens)) {
        bool& selected = screen->data(change).selected;
        const bool now = wanted.contains(screen) || (selected && !replaces);
        changed |= std::exchange(selected, now) != now;
    }
    if (changed)
        owner->announceSelectedScreens(change, notify);
    return true;
}

bool ScreenController::cancelSelected(const Screens& screens, bool notify)
{
    const QString arguments = QStringLiteral("%1 notify=%2").arg(screensText(screens)).arg(int(notify));
    if (!start(Operation::CancelScreensSelected, arguments))
        return false;
    Change change(*m_pHub);
    const MemoryDevice::Screens wanted = this->screens(change, screens);
    bool changed = false;
    for (const std::shared_ptr<MemoryScreen>& screen : wanted)
        changed |= std::exchange(screen->data(change).selected, false);
    if (changed)
        device(change)->announceSelectedScreens(change, notify);
    return !wanted.isEmpty();
}

bool ScreenController::updateEffectSpeed(
    const QList<std::pair<std::weak_ptr<BizModel::Screen>, double>>& seconds)
{
    if (!start(Operation::UpdateEffectSpeed, valuesText(seconds)))
        return false;
    const bool valid = std::all_of(seconds.cbegin(), seconds.cend(), [](const auto& value) {
        return std::isfinite(value.second) && value.second >= 0.0 && value.second <= MaxEffectSeconds;
    });
    Change change(*m_pHub);
    bool ok = valid && !seconds.isEmpty();
    for (const auto& value : seconds) {
        const std::shared_ptr<MemoryScreen> screen = this->screen(change, value.first);
        // The device counts milliseconds; what adding up tenths leaves behind them is not kept.
        const double rounded = std::round(value.second * 1000) / 1000;
        if (!screen || !valid)
            ok = false;
        else if (std::exchange(screen->data(change).effectSeconds, rounded) != rounded)
            announceEffect(change, screen);
    }
    return ok;
}

bool ScreenController::updateEffectType(const QList<std::pair<std::weak_ptr<BizModel::Screen>, int>>& types)
{
    if (!start(Operation::UpdateEffectType, valuesText(types)))
        return false;
    const bool valid = std::all_of(types.cbegin(), types.cend(), [](const auto& value) {
        return value.second == BizModel::EffectType::cut || value.second == BizModel::EffectType::fade;
    });
    Change change(*m_pHub);
    bool ok = valid && !types.isEmpty();
    for (const auto& value : types) {
        const std::shared_ptr<MemoryScreen> screen = this->screen(change, value.first);
        const auto type = BizModel::EffectType(value.second);
        if (!screen || !valid)
            ok = false;
        else if (std::exchange(screen->data(change).effectType, type) != type)
            announceEffect(change, screen);
    }
    return ok;
}

bool ScreenController::updatePGMEditStatus(const Screens& screens, bool enabled)
{
    const QString arguments = QStringLiteral("%1 enabled=%2").arg(screensText(screens)).arg(int(enabled));
    if (!start(Operation::UpdatePGMEditStatus, arguments) || m_type != ScreenType::RegularScreen)
        return false;
    Change change(*m_pHub);
    const MemoryDevice::Screens wanted = this->screens(change, screens);
    const bool allRegular = std::all_of(wanted.cbegin(), wanted.cend(), [](const auto& screen) {
        return screen->screenType() == ScreenType::RegularScreen;
    });
    if (!allRegular)
        return false;
    for (const std::shared_ptr<MemoryScreen>& screen : wanted) {
        if (std::exchange(screen->data(change).pgmEdit, enabled) == enabled)
            continue;
        change.announce([device = m_pDevice, screen = std::weak_ptr<MemoryScreen>(screen)](
                            ModelSignals& list) { Q_EMIT list.signalScreenPGMEditChanged(device, screen); });
    }
    return !wanted.isEmpty();
}

/// Writes the operation into the journal; false when it has to fail.
bool ScreenController::start(Operation operation, const QString& arguments) const
{
    return !m_pHub->operations.perform(operation, deviceText(m_pDevice) + QLatin1Char(' ') + arguments);
}

std::shared_ptr<MemoryDevice> ScreenController::device(const Guard& guard) const
{
    return m_list.own(guard, m_pDevice);
}

std::shared_ptr<MemoryScreen> ScreenController::screen(
    const Guard& guard, const std::weak_ptr<BizModel::Screen>& screen) const
{
    const std::shared_ptr<MemoryDevice> owner = device(guard);
    return owner ? owner->own(guard, screen) : nullptr;
}

MemoryDevice::Screens ScreenController::screens(const Guard& guard, const Screens& screens) const
{
    MemoryDevice::Screens list;
    for (const std::weak_ptr<BizModel::Screen>& each : screens) {
        const std::shared_ptr<MemoryScreen> present = screen(guard, each);
        if (!present)
            return {};
        list += present;
    }
    return list;
}

} // namespace Orvane::MemoryModel
