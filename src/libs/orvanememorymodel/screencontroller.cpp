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

} // namespace

ScreenController::ScreenController(const ControllerParts& parts, ScreenType type)
    : ControllerParts(parts)
    , m_type(type)
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
    owner->selectScreens(
        change,
        [&](const auto& screen, bool isSelected) {
            return wanted.contains(screen) || (isSelected && !replaces);
        },
        notify);
    return true;
}

bool ScreenController::cancelSelected(const Screens& screens, bool notify)
{
    const QString arguments = QStringLiteral("%1 notify=%2").arg(screensText(screens)).arg(int(notify));
    if (!start(Operation::CancelScreensSelected, arguments))
        return false;
    Change change(*m_pHub);
    const MemoryDevice::Screens unwanted = this->screens(change, screens);
    if (!unwanted.isEmpty())
        device(change)->selectScreens(
            change,
            [&](const auto& screen, bool isSelected) { return isSelected && !unwanted.contains(screen); },
            notify);
    return !unwanted.isEmpty();
}

bool ScreenController::updateEffectSpeed(
    const QList<std::pair<std::weak_ptr<BizModel::Screen>, double>>& seconds)
{
    const bool areValid = std::all_of(seconds.cbegin(), seconds.cend(), [](const auto& value) {
        return std::isfinite(value.second) && value.second >= 0.0 && value.second <= MaxEffectSeconds;
    });
    // The device counts milliseconds; what adding up tenths leaves behind them is not kept.
    return updateEffect(
        Operation::UpdateEffectSpeed, seconds, areValid, &MemoryScreen::Data::effectSeconds,
        [](double value) { return std::round(value * 1000) / 1000; });
}

bool ScreenController::updateEffectType(const QList<std::pair<std::weak_ptr<BizModel::Screen>, int>>& types)
{
    const bool areValid = std::all_of(types.cbegin(), types.cend(), [](const auto& value) {
        return value.second == BizModel::EffectType::cut || value.second == BizModel::EffectType::fade;
    });
    return updateEffect(
        Operation::UpdateEffectType, types, areValid, &MemoryScreen::Data::effectType,
        [](int value) { return BizModel::EffectType(value); });
}

/// Sets a value of the transition on each screen that is there; on none unless all are valid.
template <typename Values, typename Member, typename Convert>
bool ScreenController::updateEffect(
    Operation operation, const Values& values, bool areValid, Member member, Convert convert)
{
    if (!start(operation, valuesText(values)) || !areValid)
        return false;
    Change change(*m_pHub);
    bool ok = !values.isEmpty();
    for (const auto& value : values) {
        const std::shared_ptr<MemoryScreen> screen = this->screen(change, value.first);
        ok &= screen != nullptr;
        if (screen)
            change.set(
                screen->data(change).*member, convert(value.second),
                &BizModel::DeviceList::signalScreenEffectChanged, m_pDevice, screen);
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
    for (const std::shared_ptr<MemoryScreen>& screen : wanted)
        change.set(
            screen->data(change).pgmEdit, enabled, &BizModel::DeviceList::signalScreenPGMEditChanged,
            m_pDevice, screen);
    return !wanted.isEmpty();
}

} // namespace Orvane::MemoryModel
