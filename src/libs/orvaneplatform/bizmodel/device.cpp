#include "bizmodel/device.h"

#include "bizmodel/input.h"
#include "bizmodel/preset.h"
#include "bizmodel/screen.h"

#include <algorithm>

namespace Orvane::BizModel {

Device::~Device() = default;

QList<std::weak_ptr<Screen>> Device::selectedScreen(int screenTypeMask) const
{
    QList<std::weak_ptr<Screen>> selected = screens(screenTypeMask);
    const auto isNot = [](const std::weak_ptr<Screen>& screen) {
        const std::shared_ptr<Screen> present = screen.lock();
        return !present || !present->selected();
    };
    selected.erase(std::remove_if(selected.begin(), selected.end(), isNot), selected.end());
    return selected;
}

bool Device::isScreenSelected(const std::weak_ptr<Screen>& screen) const
{
    const std::shared_ptr<Screen> wanted = screen.lock();
    const auto selected = selectedScreen(Enum::Screen::AllScreenType);
    return wanted && std::any_of(selected.cbegin(), selected.cend(), [&wanted](const auto& each) {
               return each.lock() == wanted;
           });
}

bool Device::isScreenLimited(Enum::Screen::ScreenType) const
{
    return true;
}

std::shared_ptr<Screen> Device::createDefaultScreen(Enum::Screen::ScreenType)
{
    return nullptr;
}

void Device::appendViewingScreen(const std::weak_ptr<Screen>&) { }

bool Device::isTaking() const
{
    const auto all = screens(Enum::Screen::AllScreenType);
    return std::any_of(all.cbegin(), all.cend(), [](const auto& each) {
        const std::shared_ptr<Screen> screen = each.lock();
        return screen && screen->state() == Screen::State::Taking;
    });
}

bool Device::isLayerLimited(SceneType) const
{
    return false;
}

std::weak_ptr<Input> Device::findInput(quint32 interfaceId) const
{
    const auto inputs = validInputs();
    for (const std::weak_ptr<Input>& each : inputs) {
        const std::shared_ptr<Input> input = each.lock();
        if (input && input->interfaceId() == interfaceId)
            return input;
    }
    return {};
}

std::weak_ptr<Connector> Device::getConnector(const s_InterfaceFullId&) const
{
    return {};
}

int Device::activedPresetKeyNo() const
{
    const std::shared_ptr<Preset> active = activedPreset().lock();
    return active ? active->fileId() : 0;
}

void Device::setActivedPreset(const std::weak_ptr<Preset>&, quint16) { }

bool Device::editPresetValidityCheck(const QString&, QString&) const
{
    return true;
}

QList<std::weak_ptr<File>> Device::files(Enum::File::FileType type) const
{
    QList<std::weak_ptr<File>> list;
    const auto all = presets();
    for (const std::weak_ptr<Preset>& each : all) {
        const std::shared_ptr<Preset> preset = each.lock();
        if (preset && preset->fileType() == type)
            list += preset;
    }
    return list;
}

void Device::addKeypadFile(const std::shared_ptr<Keypad>&) { }

} // namespace Orvane::BizModel
