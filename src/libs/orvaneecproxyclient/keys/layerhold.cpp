#include "layerhold_p.h"

#include "log_p.h"
#include "modelaccess_p.h"

#include "bizmodel/device.h"
#include "bizmodel/devicelist.h"
#include "bizmodel/screen.h"

#include <algorithm>
#include <utility>

namespace Orvane::ECProxy::Client::Internal {

namespace {

template <typename Model> bool isSame(const std::weak_ptr<Model>& left, const std::weak_ptr<Model>& right)
{
    return !left.owner_before(right) && !right.owner_before(left);
}

} // namespace

LayerTarget LayerTarget::actived()
{
    const auto device = activedDevice();
    return {device, device ? device->activedScreen() : WeakScreen()};
}

bool LayerTarget::isActived() const
{
    const LayerTarget now = actived();
    return isSame(device, now.device) && isSame(screen, now.screen);
}

bool LayerTarget::isPresent() const
{
    const BizModel::DeviceList* devices = BizModel::DeviceList::instance();
    const auto owner = device.lock();
    const auto target = screen.lock();
    // A device that is gone is in no group, not even in its own.
    if (!devices || !owner || !target || devices->groupDevices(device, true, false).isEmpty())
        return false;
    const auto present = owner->screens(target->screenType());
    return std::any_of(
        present.begin(), present.end(), [&](const auto& other) { return isSame(other, screen); });
}

LayerHold::LayerHold(
    const char* name, std::function<void(const LayerTarget&)> act, std::function<void()> refuse)
    : m_strName(name)
    , m_act(std::move(act))
    , m_refuse(std::move(refuse))
    , m_timer([this] { timeout(); })
{
}

void LayerHold::press()
{
    m_timer.stop(); // or the hold of an earlier press could act on the target of this one
    {
        const LayerTarget actived = LayerTarget::actived();
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_target = actived;
    }
    m_timer.restart(Duration);
}

std::optional<LayerTarget> LayerHold::release()
{
    if (!m_timer.stop())
        return std::nullopt;
    const LayerTarget pressed = target();
    if (pressed.isActived())
        return pressed;
    ecWarning(lcKeys, "%s ended: another screen is active than when the key was pressed.", m_strName);
    return std::nullopt;
}

void LayerHold::endUnlessActived()
{
    if (!m_timer.isRunning() || target().isActived() || !m_timer.stop())
        return;
    ecWarning(lcKeys, "%s ended: another screen is active than when the key was pressed.", m_strName);
    m_refuse();
}

void LayerHold::cancel(const char* reason)
{
    if (!m_timer.stop())
        return;
    if (reason)
        ecWarning(lcKeys, "%s ended: %s", m_strName, reason);
    else
        KeyTracing::refuse(KeyTracing::ReleasedTooSoon);
}

void LayerHold::timeout()
{
    const LayerTarget pressed = target();
    if (isUpgrading())
        ecWarning(lcKeys, "%s ended: the device is being upgraded.", m_strName);
    else if (!pressed.isActived())
        ecWarning(lcKeys, "%s ended: another screen is active than when the key was pressed.", m_strName);
    else
        return m_act(pressed);
    m_refuse();
}

LayerTarget LayerHold::target() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_target;
}

} // namespace Orvane::ECProxy::Client::Internal
