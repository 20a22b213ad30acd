#pragma once

#include "controllerparts.h"
#include "orvaneplatform/modelcontrol/device.h"

namespace Orvane::MemoryModel {

class DeviceController final : private ControllerParts, public ModelControl::Device {
public:
    explicit DeviceController(const ControllerParts& parts);

    void setActivedScreen(const std::weak_ptr<BizModel::Screen>& screen) override;
    /// Whatever the screens are doing; a take passes over those that are busy.
    ScreenList getTakeScreens(
        int screenTypeMask, const ModelControl::s_SwitchEffectBody& effect, bool onlySelected) const override;
    bool createPresetFile(FileType type, quint16 fileId, QString& error) override;
    bool removeFile(const QList<std::weak_ptr<BizModel::File>>& files, QString& error) override;

private:
    using ControllerParts::device;
    using ControllerParts::m_pDevice;
};

} // namespace Orvane::MemoryModel
