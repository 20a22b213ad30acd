#pragma once

#include "orvaneplatform/bridge/deviceitem.h"
#include "orvaneplatform/modelcontrol/controllerfactory.h"

namespace Orvane::Bridge {

/// The controllers of a model that is made of items: they refuse what names nothing that is there, tell your
/// model, and change the items, which announce it.
///
/// The hooks are what your model does then. They are called on any thread, on several at once, without a lock
/// and before the items change; false refuses and leaves all as it was. Unless overridden they accept, but
/// for those of presets, which need a place that you know.
class ORVANEPLATFORM_EXPORT ItemControllerFactory : public ModelControl::ControllerFactory {
public:
    /// The enumeration, by its short name.
    using FileType = BizModel::Enum::File::FileType;

    ItemControllerFactory();
    ~ItemControllerFactory() override;

    /// Controllers of the device's items; empty for a device that is none.
    /// @{
    std::shared_ptr<ModelControl::Device> createDevice(const std::weak_ptr<BizModel::Device>& device) final;
    std::shared_ptr<ModelControl::Screen> createScreen(
        BizModel::Enum::Screen::ScreenType type, const std::weak_ptr<BizModel::Device>& device) final;
    std::shared_ptr<ModelControl::Layer> createLayer(
        BizModel::LayerType type, const std::weak_ptr<BizModel::Device>& device) final;
    std::shared_ptr<ModelControl::Preset> createPreset(const std::weak_ptr<BizModel::Device>& device) final;
    /// @}

protected:
    /// @name Screens
    /// @{

    /// The screen's program may be edited, or no longer.
    virtual bool editProgram(ScreenItem& screen, bool edited);
    /// @p seconds is the new transition time.
    virtual bool setTransitionTime(ScreenItem& screen, double seconds);
    /// @}

    /// @name Layers
    /// @{

    /// @p layer is not on the screen yet. Refused without a call when the screen has no room.
    virtual bool addLayer(ScreenItem& screen, LayerItem& layer);
    /// The layer is to go.
    virtual bool removeLayer(ScreenItem& screen, LayerItem& layer);
    /// @p order is the scene's new one, from the bottom to the top.
    virtual bool orderLayers(
        ScreenItem& screen, BizModel::SceneType scene, const ScreenItem::LayerList& order);
    /// The layer gets another window, in pixels of the mosaic.
    virtual bool moveLayer(ScreenItem& screen, LayerItem& layer, const QRect& window);
    /// The layer shows another input.
    virtual bool bindSource(ScreenItem& screen, LayerItem& layer, quint32 inputId);
    /// @}

    /// @name Presets
    /// Those that refuse put the reason into @p error.
    /// @{

    /// Stores the present scene as the preset, in the place of an earlier one. Unless overridden refused.
    virtual bool storePreset(DeviceItem& device, PresetItem& preset, QString& error);
    /// Puts the preset's scene on the screens, by `ScreenItem::setLayerList`. On a pool thread. Unless
    /// overridden refused.
    virtual bool loadPreset(DeviceItem& device, PresetItem& preset, QString& error);
    /// The preset is to go.
    virtual bool removePreset(DeviceItem& device, PresetItem& preset, QString& error);
    /// @}

private:
    class DeviceController;
    class ScreenController;
    class LayerController;
    class PresetController;
};

} // namespace Orvane::Bridge
