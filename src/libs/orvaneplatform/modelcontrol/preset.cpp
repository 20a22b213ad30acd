#include "modelcontrol/preset.h"

#include "modelcontrol/controllerfactory.h"

namespace Orvane::ModelControl {

Preset::~Preset() = default;

std::shared_ptr<Preset> Preset::create(const std::weak_ptr<BizModel::Device>& device)
{
    ControllerFactory* factory = ControllerFactory::instance();
    return factory ? factory->createPreset(device) : nullptr;
}

bool Preset::coverPreset(
    const std::weak_ptr<BizModel::Preset>&, BizModel::Enum::File::FileType, QString& error)
{
    error = QStringLiteral("The model does not overwrite presets.");
    return false;
}

bool Preset::checkPresetData(const std::weak_ptr<BizModel::Preset>& preset, QString& error) const
{
    if (preset.expired())
        error = QStringLiteral("The preset is gone.");
    return !preset.expired();
}

bool Preset::createKeypadInfo(
    const std::weak_ptr<BizModel::Preset>&, const Screens&, ProtoModel::File::s_KeypadInfo& keypadInfo) const
{
    keypadInfo = {};
    return true;
}

} // namespace Orvane::ModelControl
