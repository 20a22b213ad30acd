#pragma once

#include "orvaneplatform/bizmodel/device.h"
#include "orvaneplatform/bridge/inputitem.h"
#include "orvaneplatform/bridge/presetitem.h"
#include "orvaneplatform/bridge/screenitem.h"

#include <atomic>
#include <memory>
#include <mutex>

namespace Orvane::Bridge {

/// A device that keeps what your model says of it, and announces what changes, after the change and without a
/// lock. Any thread, but for what is said to come before the start. Always held by a shared pointer.
class ORVANEPLATFORM_EXPORT DeviceItem : public BizModel::Device,
                                         public std::enable_shared_from_this<DeviceItem> {
public:
    /// The items of a device, in their order.
    /// @{
    using ScreenList = QList<std::shared_ptr<ScreenItem>>;
    using InputList = QList<std::shared_ptr<InputItem>>;
    using PresetList = QList<std::shared_ptr<PresetItem>>;
    /// @}

    /// @p ipMacSn is the device's identity, which does not change.
    explicit DeviceItem(QString ipMacSn);
    ~DeviceItem() override;

    /// @name What the console asks
    /// @{
    QString ipMacSn() const override { return m_strIpMacSn; }
    bool isMultiScreens() const override { return m_bMultiScreens; }
    BizModel::s_DeviceConfig deviceConfig() const override { return m_config; }
    std::weak_ptr<BizModel::Screen> activedScreen() const override;
    QList<std::weak_ptr<BizModel::Screen>> screens(int screenTypeMask) const override;
    bool swapEnable() const override { return m_bSwap; }
    QList<std::weak_ptr<BizModel::Input>> validInputs() const override;
    /// Single link for every input.
    std::weak_ptr<BizModel::Connector> getConnector(const BizModel::s_InterfaceFullId& id) const override;
    quint16 maxPresetCount() const override { return m_nMaxPresets; }
    QList<std::weak_ptr<BizModel::Preset>> presets() const override;
    std::weak_ptr<BizModel::Preset> activedPreset() const override;
    /// Announced.
    void setActivedPreset(const std::weak_ptr<BizModel::Preset>& preset, quint16 fileId) override;
    bool loadToPGMEnable() const override { return m_bLoadToProgram; }
    /// @}

    /// @name What your model says before the console starts
    /// @{

    /// Several screens may be selected at once; one at a time otherwise.
    void setMultiScreens(bool multi) { m_bMultiScreens = multi; }
    /// What the device's configuration allows; nothing at first.
    void setDeviceConfig(const BizModel::s_DeviceConfig& config) { m_config = config; }
    /// Presets have the slots from 1 to this number; 0 for no presets.
    void setMaxPresetCount(quint16 count) { m_nMaxPresets = count; }
    /// @}

    /// @name What your model says
    /// @{

    /// The first screen is selected and active from the start.
    void addScreen(const std::shared_ptr<ScreenItem>& screen);
    /// Another screen becomes active when this one was.
    void removeScreen(const std::shared_ptr<ScreenItem>& screen);
    /// The screen that layer keys work on.
    void setActivedScreen(const std::shared_ptr<ScreenItem>& screen);
    /// All screens, in the order in which they were added.
    ScreenList screenList() const;
    /// The selected ones of them.
    ScreenList selectedScreens() const;
    /// A further input, behind the others.
    void addInput(const std::shared_ptr<InputItem>& input);
    /// The input is gone; layers keep its id.
    void removeInput(const std::shared_ptr<InputItem>& input);
    /// A further preset; its slot is free.
    void addPreset(const std::shared_ptr<PresetItem>& preset);
    /// No preset is active afterwards when this one was. False when it is not the device's.
    bool removePreset(const std::shared_ptr<PresetItem>& preset);
    /// All presets, in the order in which they were added.
    PresetList presetList() const;
    /// Whether takes exchange program and preview.
    void setSwap(bool swap);
    /// Whether presets load to program.
    void setLoadToProgram(bool toProgram);
    /// @}

private:
    class SingleLink;

    void announceActivedScreen() const;

    const QString m_strIpMacSn;
    /// Not changed after the start.
    BizModel::s_DeviceConfig m_config;
    std::atomic<bool> m_bMultiScreens{false};
    std::atomic<quint16> m_nMaxPresets{0};
    std::atomic<bool> m_bSwap{false};
    std::atomic<bool> m_bLoadToProgram{false};
    const std::shared_ptr<BizModel::Connector> m_pConnector;

    /// Guards what follows, which keys and the application change.
    mutable std::mutex m_mutex;
    ScreenList m_screens;
    InputList m_inputs;
    PresetList m_presets;
    std::shared_ptr<ScreenItem> m_pActiveScreen;
    std::shared_ptr<BizModel::Preset> m_pActivePreset;
};

} // namespace Orvane::Bridge
