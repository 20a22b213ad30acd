#pragma once

#include "controllerparts.h"
#include "orvaneplatform/modelcontrol/screen.h"

namespace Orvane::MemoryModel {

/// Works on the screens of one type of a device.
class ScreenController final : public ModelControl::Screen, private ControllerParts {
public:
    ScreenController(const ControllerParts& parts, ScreenType type);

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

    template <typename Values, typename Member, typename Convert>
    bool updateEffect(
        Operation operation, const Values& values, bool areValid, Member member, Convert convert);
    /// The layer that the record describes, on top of the scene; empty when it is refused.
    std::shared_ptr<MemoryLayer> makeLayer(
        Change& change, const std::weak_ptr<BizModel::Screen>& screen, BizModel::SceneType scene,
        LayerRecord record) const;
    /// The layers, all of which are on the screen and may be changed; none otherwise.
    MemoryScreen::Layers editable(
        const Guard& guard, const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers) const;
    bool reorder(
        Operation operation, const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers,
        Reorder order);

    const ScreenType m_type;
};

} // namespace Orvane::MemoryModel
