#pragma once

#include "bizmodel/devicelist.h"

#include <atomic>

namespace Orvane::TestSupport {

/// An application without any device: enough for what does not touch the model.
class BareDeviceList : public BizModel::DeviceList {
public:
    std::weak_ptr<BizModel::Device> activedDevice() const override { return {}; }
    bool isCompatibleUpgrading() const override { return m_bUpgrading; }
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

    std::atomic<bool> m_bUpgrading{false};
    std::atomic<BizModel::Enum::Preset::PresetOptMode> m_presetMode{BizModel::Enum::Preset::Noting};
};

} // namespace Orvane::TestSupport
