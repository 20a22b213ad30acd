#pragma once

#include "bizmodel/devicelist.h"

#include <atomic>

namespace Orvane::ConsoleHost {

/// A model without any device: the console's keypad, locks and lights work, everything else has nothing to
/// act on.
class EmptyDeviceList : public BizModel::DeviceList {
public:
    EmptyDeviceList() = default;

    std::weak_ptr<BizModel::Device> activedDevice() const override { return {}; }
    bool isCompatibleUpgrading() const override { return false; }
    QList<std::weak_ptr<BizModel::Device>> groupDevices(const QString&, bool, bool) const override
    {
        return {};
    }
    QList<std::weak_ptr<BizModel::Device>> groupDevices(
        const std::weak_ptr<BizModel::Device>&, bool, bool) const override
    {
        return {};
    }
    BizModel::Enum::Preset::PresetOptMode presetOperateMode() const override { return m_presetMode; }
    void setPresetOperateMode(BizModel::Enum::Preset::PresetOptMode mode) override { m_presetMode = mode; }

private:
    std::atomic<BizModel::Enum::Preset::PresetOptMode> m_presetMode{BizModel::Enum::Preset::Noting};
};

} // namespace Orvane::ConsoleHost
