#include "modelcontrol/device.h"

#include "bizmodel/device.h"
#include "bizmodel/screen.h"
#include "modelcontrol/controllerfactory.h"
#include "modelcontrol/screen.h"

#include <algorithm>
#include <utility>

namespace Orvane::ModelControl {

Device::Device(std::weak_ptr<BizModel::Device> device)
    : m_pDevice(std::move(device))
{
}

Device::~Device() = default;

std::shared_ptr<Device> Device::create(const std::weak_ptr<BizModel::Device>& device)
{
    ControllerFactory* factory = ControllerFactory::instance();
    return factory ? factory->createDevice(device) : nullptr;
}

std::shared_ptr<Screen> Device::screenModelControl(
    BizModel::Enum::Screen::ScreenType type, const std::weak_ptr<BizModel::Device>& device)
{
    ControllerFactory* factory = ControllerFactory::instance();
    return factory ? factory->createScreen(type, device) : nullptr;
}

bool Device::takeCutEnabled() const
{
    using State = BizModel::Screen::State;
    const std::shared_ptr<BizModel::Device> own = device();
    if (!own)
        return false;
    const auto selected = own->selectedScreen(BizModel::Enum::Screen::RegularAndAUXScreens);
    return !selected.isEmpty() && std::all_of(selected.cbegin(), selected.cend(), [](const auto& each) {
        const std::shared_ptr<BizModel::Screen> screen = each.lock();
        const State state = screen ? screen->state() : State::Normal;
        return state == State::Normal || state == State::Resource_out;
    });
}

QList<std::weak_ptr<BizModel::Screen>> Device::getTakeScreens(
    int screenTypeMask, const s_SwitchEffectBody&, bool onlySelected) const
{
    const std::shared_ptr<BizModel::Device> own = device();
    if (!own)
        return {};
    return onlySelected ? own->selectedScreen(screenTypeMask) : own->screens(screenTypeMask);
}

bool Device::createPresetFile(BizModel::Enum::File::FileType, quint16, QString& error)
{
    error = QStringLiteral("The model does not store presets.");
    return false;
}

bool Device::removeFile(const QList<std::weak_ptr<BizModel::File>>&, QString& error)
{
    error = QStringLiteral("The model does not remove files.");
    return false;
}

} // namespace Orvane::ModelControl
