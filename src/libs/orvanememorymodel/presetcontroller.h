#pragma once

#include "controllerparts.h"
#include "orvaneplatform/modelcontrol/preset.h"

namespace Orvane::MemoryModel {

/// Works on the presets that a device shares with its group.
class PresetController final : public ModelControl::Preset, private ControllerParts {
public:
    explicit PresetController(const ControllerParts& parts);

    bool coverPreset(const std::weak_ptr<BizModel::Preset>& preset, FileType type, QString& error) override;
    /// False when none of the preset's screens is there or one of them is busy.
    bool checkPresetData(const std::weak_ptr<BizModel::Preset>& preset, QString& error) const override;
    bool createKeypadInfo(
        const std::weak_ptr<BizModel::Preset>& preset, const Screens& screens,
        ProtoModel::File::s_KeypadInfo& keypadInfo) const override;
    /// Presets of the other devices of the group with the same file id are applied too.
    bool updatePresetModelData(
        const std::weak_ptr<BizModel::Preset>& preset, const Screens& screens, QString& error) override;

private:
    /// A preset with the device that it is stored on, and the group of the controller's device.
    struct Found {
        MemoryDeviceList::Devices group;
        std::shared_ptr<MemoryDevice> owner;
        std::shared_ptr<MemoryPreset> preset;
    };

    bool start(
        Operation operation, const std::weak_ptr<BizModel::Preset>& preset, const QString& arguments,
        QString& error) const;
    bool takeOver(
        Change& change, const std::shared_ptr<MemoryDevice>& device,
        const std::shared_ptr<MemoryPreset>& preset, const MemoryDevice::Screens& wanted, QString& error);
    /// No preset, with the reason in @p error, when it is not there.
    Found find(const Guard& guard, const std::weak_ptr<BizModel::Preset>& preset, QString& error) const;
};

} // namespace Orvane::MemoryModel
