#include "controllerparts.h"

#include "layers.h"
#include "operationtext.h"

#include <utility>

namespace Orvane::MemoryModel {

ControllerParts::ControllerParts(
    std::shared_ptr<ModelHub> hub, MemoryDeviceList& list, Processor& processor,
    std::weak_ptr<BizModel::Device> device)
    : m_pHub(std::move(hub))
    , m_list(list)
    , m_processor(processor)
    , m_pDevice(std::move(device))
{
}

bool ControllerParts::start(Operation operation, const QString& arguments, QString* error) const
{
    const auto failure =
        m_pHub->operations.perform(operation, deviceText(m_pDevice) + QLatin1Char(' ') + arguments);
    if (error)
        *error = failure.value_or(QString());
    return !failure;
}

std::shared_ptr<MemoryDevice> ControllerParts::device(const Guard& guard) const
{
    return m_list.own(guard, m_pDevice);
}

std::shared_ptr<MemoryScreen> ControllerParts::screen(
    const Guard& guard, const std::weak_ptr<BizModel::Screen>& screen) const
{
    const std::shared_ptr<MemoryDevice> owner = device(guard);
    return owner ? owner->own(guard, screen) : nullptr;
}

MemoryDevice::Screens ControllerParts::screens(const Guard& guard, const ScreenList& screens) const
{
    MemoryDevice::Screens list;
    for (const std::weak_ptr<BizModel::Screen>& each : screens) {
        list += screen(guard, each);
        if (!list.last())
            return {};
    }
    return list;
}

std::shared_ptr<MemoryScreen> ControllerParts::find(
    const Guard& guard, const std::weak_ptr<BizModel::Screen>& screen, const LayerList& layers,
    MemoryScreen::Layers& found) const
{
    auto present = this->screen(guard, screen);
    for (const std::weak_ptr<BizModel::Layer>& each : layers) {
        const auto layer = ownObject<MemoryLayer>(each);
        if (!present || screenOf(guard, layer) != present)
            return nullptr;
        found += layer;
    }
    return present;
}

std::shared_ptr<MemoryScreen> ControllerParts::screenOf(
    const Guard& guard, const std::shared_ptr<MemoryLayer>& layer) const
{
    const std::shared_ptr<MemoryScreen> screen = layer ? MemoryModel::screenOf(*layer) : nullptr;
    if (!screen || !std::as_const(*screen).data(guard).registered
        || screen->device().lock() != m_pDevice.lock())
        return nullptr;
    const BizModel::SceneType scene = std::as_const(*layer).data(guard).scene;
    return std::as_const(*screen).data(guard).layers(scene).contains(layer) ? screen : nullptr;
}

MemoryDeviceList::Devices ControllerParts::group(const Guard& guard) const
{
    const std::shared_ptr<MemoryDevice> owner = device(guard);
    return owner ? m_list.group(guard, owner) : MemoryDeviceList::Devices();
}

} // namespace Orvane::MemoryModel
