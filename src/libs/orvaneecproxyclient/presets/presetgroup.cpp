#include "presetgroup_p.h"

#include "ecmanager.h"

#include "bizmodel/device.h"
#include "bizmodel/devicelist.h"
#include "bizmodel/keypad.h"
#include "ec/eckeyboardconfig.h"

namespace Orvane::ECProxy::Client::Internal {

using BizModel::Enum::Preset::PresetOptMode;

std::shared_ptr<Command> presetCommand()
{
    const ECManager* manager = ECManager::instance();
    return manager ? manager->presetCommand().lock() : nullptr;
}

std::shared_ptr<Command> configuredPresetCommand()
{
    auto command = presetCommand();
    if (!command) {
        qWarning("Find preset command data error.");
        return nullptr;
    }
    if (!command->ecCommandConfig()) {
        qWarning("Find preset command config error.");
        return nullptr;
    }
    return command;
}

void offFunctionkeyColor(PresetCallbackType type)
{
    const auto command = configuredPresetCommand();
    const auto config = command ? command->ecCommandConfig() : nullptr;
    if (!config)
        return;
    const auto button = config->findECButtonConfigByOrvaneKey(quint16(type));
    if (!button) {
        qWarning("the ecbutton is invalid");
        return;
    }
    command->updateECButtonColor(button->ECKey, ECLEDColor::Off);
}

bool isPresetKeyReleaseAllowed(const Command& command, quint16 ecKey)
{
    if (!command.ecCommandConfig()) {
        qWarning("Find preset command data error.");
        return false;
    }
    switch (PresetCallbackType(command.findOrvaneKey(ecKey))) {
    case PresetCallbackType::eRemoveSelectedPresetCB:
    case PresetCallbackType::eClearPresetsCB:
    case PresetCallbackType::eSavePresetCB:
    case PresetCallbackType::eLoadToPgm:
        return true;
    default:
        return false;
    }
}

PresetOptMode presetOperateMode()
{
    const BizModel::DeviceList* devices = BizModel::DeviceList::instance();
    return devices ? devices->presetOperateMode() : PresetOptMode::Noting;
}

void setPresetOperateMode(PresetOptMode mode)
{
    if (BizModel::DeviceList* devices = BizModel::DeviceList::instance())
        devices->setPresetOperateMode(mode);
}

std::shared_ptr<BizModel::Keypad> keypadFile(const BizModel::Device& device)
{
    const auto files = device.files(BizModel::Enum::File::keypad);
    for (const auto& file : files) {
        if (auto keypad = std::dynamic_pointer_cast<BizModel::Keypad>(file.lock()))
            return keypad;
    }
    return nullptr;
}

} // namespace Orvane::ECProxy::Client::Internal
