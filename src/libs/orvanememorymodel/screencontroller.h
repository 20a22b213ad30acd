#pragma once

#include "memorydevicelist.h"
#include "orvaneplatform/modelcontrol/screen.h"
#include "processor.h"

namespace Orvane::MemoryModel {

/// Works on the screens of one type of a device.
class ScreenController final : public ModelControl::Screen {
public:
    ScreenController(
        std::shared_ptr<ModelHub> hub, MemoryDeviceList& list, Processor& processor, ScreenType type,
        std::weak_ptr<BizModel::Device> device);

    /// Refused as a whole when one of the screens is not there or, on a device without multi-screen mode,
    /// when several are given. Such a device has one selected screen at most: there, appending replaces.
    bool setSelected(
        const Screens& screens, BizModel::SelectedType mode, bool notify, bool sendToDevice) override;
    bool cancelSelected(const Screens& screens, bool notify) override;
    bool updateEffectSpeed(const QList<std::pair<std::weak_ptr<BizModel::Screen>, double>>& seconds) override;
    bool updateEffectType(const QList<std::pair<std::weak_ptr<BizModel::Screen>, int>>& types) override;
    bool updatePGMEditStatus(const Screens& screens, bool enabled) override;

    /// Regular layers on regular screens, AUX layers on AUX screens. A new layer is not selected.
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
    /// Changes the order of the marked ones of a scene's layers.
    using Reorder = void (*)(MemoryScreen::Layers& layers, const MemoryScreen::Layers& marked);

    bool start(Operation operation, const QString& arguments) const;
    std::shared_ptr<MemoryDevice> device(const Guard& guard) const;
    std::shared_ptr<MemoryScreen> screen(
        const Guard& guard, const std::weak_ptr<BizModel::Screen>& screen) const;
    /// All of the screens, or none when one is not there.
    MemoryDevice::Screens screens(const Guard& guard, const Screens& screens) const;
    /// The layer that the record describes, on top of the scene; empty when it is refused.
    std::shared_ptr<MemoryLayer> makeLayer(
        Change& change, const std::weak_ptr<BizModel::Screen>& screen, BizModel::SceneType scene,
        LayerRecord record) const;
    /// The layers, all of which are on the screen and may be changed; none otherwise.
    MemoryScreen::Layers editable(
        const Guard& guard, const std::shared_ptr<MemoryScreen>& screen, const Layers& layers) const;
    bool reorder(
        Operation operation, const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers,
        Reorder order);

    const std::shared_ptr<ModelHub> m_pHub;
    MemoryDeviceList& m_list;
    Processor& m_processor;
    const ScreenType m_type;
    const std::weak_ptr<BizModel::Device> m_pDevice;
};

} // namespace Orvane::MemoryModel
