#pragma once

#include "bridge/itemcontrollerfactory.h"
#include "modelcontrol/device.h"
#include "modelcontrol/layer.h"
#include "modelcontrol/preset.h"
#include "modelcontrol/screen.h"

/// The controllers of `ItemControllerFactory`, whose hooks they call.
namespace Orvane::Bridge {

namespace Internal {

/// What each of them works on.
class ControllerParts {
public:
    ControllerParts(ItemControllerFactory& hooks, const std::shared_ptr<DeviceItem>& device)
        : m_hooks(hooks)
        , m_pDevice(device)
    {
    }

protected:
    ItemControllerFactory& m_hooks;
    const std::weak_ptr<DeviceItem> m_pDevice;
};

} // namespace Internal

class ItemControllerFactory::DeviceController final : public ModelControl::Device,
                                                      private Internal::ControllerParts {
public:
    DeviceController(ItemControllerFactory& hooks, const std::shared_ptr<DeviceItem>& device)
        : ModelControl::Device(device)
        , ControllerParts(hooks, device)
    {
    }

    void setActivedScreen(const std::weak_ptr<BizModel::Screen>& screen) override;
    bool createPresetFile(FileType type, quint16 fileId, QString& error) override;
    bool removeFile(const QList<std::weak_ptr<BizModel::File>>& files, QString& error) override;

private:
    using ControllerParts::m_pDevice;
};

class ItemControllerFactory::ScreenController final : public ModelControl::Screen,
                                                      private Internal::ControllerParts {
public:
    using ControllerParts::ControllerParts;

    bool setSelected(
        const Screens& screens, BizModel::SelectedType mode, bool notify, bool sendToDevice) override;
    bool cancelSelected(const Screens& screens, bool notify) override;
    bool updateEffectSpeed(const QList<std::pair<std::weak_ptr<BizModel::Screen>, double>>& seconds) override;
    bool updatePGMEditStatus(const Screens& screens, bool enabled) override;
    std::shared_ptr<BizModel::Layer> addLayer(
        const std::weak_ptr<BizModel::Screen>& screen, BizModel::LayerType type, BizModel::SceneType scene,
        int sourceId, int sourceType, const QRect& window) override;
    bool removeLayers(
        const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers,
        QList<std::pair<BizModel::s_ScreenLayerId, QString>>& failed) override;
    bool topZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers) override;
    bool incrZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers) override;
    bool bottomZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers) override;
    bool decrZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers) override;

private:
    using LayerList = ScreenItem::LayerList;
    using Reorder = void (*)(LayerList& layers, const LayerList& marked);

    bool reorder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers, Reorder order);
};

class ItemControllerFactory::LayerController final : public ModelControl::Layer,
                                                     private Internal::ControllerParts {
public:
    using ControllerParts::ControllerParts;

    bool setSelected(
        const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers, BizModel::SelectedType mode,
        bool notify) override;
    bool cancelSelected(
        const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers, bool notify) override;
    bool updateWindow(const std::weak_ptr<BizModel::Layer>& layer, const QRect& window) override;
    bool bindSource(const Layers& layers, quint32 sourceId, int sourceType) override;
};

class ItemControllerFactory::PresetController final : public ModelControl::Preset,
                                                      private Internal::ControllerParts {
public:
    using ControllerParts::ControllerParts;

    bool coverPreset(const std::weak_ptr<BizModel::Preset>& preset, FileType type, QString& error) override;
    bool updatePresetModelData(
        const std::weak_ptr<BizModel::Preset>& preset, const Screens& screens, QString& error) override;
};

} // namespace Orvane::Bridge
