// Step 2: layers on the screens, made, selected and removed by keys, and inputs that they show.
#pragma once

#include "screens.h"

#include "bizmodel/connector.h"
#include "bizmodel/input.h"
#include "bizmodel/layer.h"
#include "bizmodel/output.h"
#include "bizmodel/subcard.h"
#include "modelcontrol/layer.h"

#include <mutex>

namespace Own {

using LayerPtr = std::weak_ptr<BizModel::Layer>;

struct Input : BizModel::Input {
    Input(quint32 inputId, const QString& inputName)
        : id(inputId)
        , title(inputName)
    {
    }
    quint32 interfaceId() const override { return id; }
    QString name() const override { return title; }

    const quint32 id;
    const QString title;
};

struct Connector : BizModel::Connector {
    BizModel::CapacityMode capacity() const override { return BizModel::CapacityMode::_SL; }
};

struct Subcard : BizModel::Subcard {
    int layerCapacity() const override { return 8; }
};

struct Output : BizModel::Output { };

struct Layer : BizModel::Layer {
    Layer(const BizModel::s_ScreenLayerId& layerPlace, quint32 inputId, const QRect& layerWindow)
        : place(layerPlace)
        , window(layerWindow)
        , input(inputId)
    {
    }
    quint32 layerId() const override { return place.layerId; }
    BizModel::s_ScreenLayerId screenLayerId() const override { return place; }
    QString name() const override { return QString("Layer %1").arg(place.layerId); }
    BizModel::SceneType sceneType() const override { return place.sceneType; }
    quint32 sourceId() const override { return input; }
    QRect windowRect() const override { return window; }

    const BizModel::s_ScreenLayerId place;
    const QRect window;
    std::atomic<quint32> input;
    std::atomic<bool> isSelected{false};
};

/// The keys show the preview, and a take leaves it as it is.
struct LayerScreen : Screen {
    using Screen::Screen;
    QList<LayerPtr> layers(BizModel::SceneType scene, int typeMask) const override
    {
        if (scene != BizModel::SceneType::PVW || !(typeMask & BizModel::LayerType::Regular))
            return {};
        const auto now = content();
        return QList<LayerPtr>(now.begin(), now.end());
    }
    QList<LayerPtr> selectedLayers(int sceneMask) const override
    {
        QList<LayerPtr> found;
        for (const auto& layer : content()) {
            if (layer->isSelected && (sceneMask & BizModel::SceneType::PVW))
                found.append(layer);
        }
        return found;
    }
    QList<std::weak_ptr<BizModel::Output>> outputs() const override { return {output}; }
    QRectF mosaicRect(const std::weak_ptr<BizModel::Output>&) const override { return {0, 0, 1920, 1080}; }
    QList<std::weak_ptr<BizModel::Subcard>> subCards() const override { return {card}; }
    std::shared_ptr<BizModel::Layer> createProbeLayer(
        const std::weak_ptr<BizModel::Input>& source, BizModel::CapacityMode) const override
    {
        const auto input = source.lock();
        return input ? newLayer(input->interfaceId(), QRect(0, 0, 960, 540)) : nullptr;
    }

    std::shared_ptr<Layer> newLayer(quint32 inputId, const QRect& window) const
    {
        const auto scene = BizModel::SceneType::PVW;
        const BizModel::s_ScreenLayerId place{id, scene, nextLayerId(scene, BizModel::LayerType::Regular)};
        return std::make_shared<Layer>(place, inputId, window);
    }
    QList<std::shared_ptr<Layer>> content() const
    {
        const std::lock_guard lock(mutex);
        return preview;
    }
    void setContent(const QList<std::shared_ptr<Layer>>& layers)
    {
        const std::lock_guard lock(mutex);
        preview = layers;
    }
    void add(const std::shared_ptr<Layer>& layer)
    {
        const std::lock_guard lock(mutex);
        preview.append(layer);
    }
    bool remove(const std::shared_ptr<Layer>& layer)
    {
        const std::lock_guard lock(mutex);
        return preview.removeOne(layer);
    }

    const std::shared_ptr<Output> output = std::make_shared<Output>();
    const std::shared_ptr<Subcard> card = std::make_shared<Subcard>();

private:
    mutable std::mutex mutex; // guards preview; never held while a signal is emitted
    QList<std::shared_ptr<Layer>> preview;
};

struct LayerDevice : Device {
    QList<std::weak_ptr<BizModel::Input>> validInputs() const override
    {
        return QList<std::weak_ptr<BizModel::Input>>(inputs.begin(), inputs.end());
    }
    std::weak_ptr<BizModel::Connector> getConnector(const BizModel::s_InterfaceFullId&) const override
    {
        return connector;
    }

    const std::shared_ptr<Connector> connector = std::make_shared<Connector>();
    QList<std::shared_ptr<Input>> inputs; // filled before the start
};

struct LayerControl : ModelControl::Layer {
    explicit LayerControl(const DevicePtr& owner)
        : device(owner)
    {
    }
    bool setSelected(
        const ScreenPtr& screen, const Layers& layers, BizModel::SelectedType mode, bool notify) override
    {
        if (mode == BizModel::SelectedType::Cover)
            select(screen, screen.lock()->selectedLayers(), false, false);
        return select(screen, layers, true, notify);
    }
    bool cancelSelected(const ScreenPtr& screen, const Layers& layers, bool notify) override
    {
        return select(screen, layers, false, notify);
    }
    bool bindSource(const Layers& layers, quint32 sourceId, int) override
    {
        for (const ScreenPtr& screen : device.lock()->screens(RegularScreens)) {
            for (const LayerPtr& each : layers) {
                const auto layer = std::static_pointer_cast<Own::Layer>(each.lock());
                if (!layer || layer->place.screenId != screen.lock()->screenId())
                    continue;
                layer->input = sourceId;
                Q_EMIT BizModel::DeviceList::instance()->signalLayerSourceChanged(device, screen, layer);
            }
        }
        return true;
    }
    bool select(const ScreenPtr& screen, const Layers& layers, bool on, bool notify)
    {
        for (const LayerPtr& each : layers) {
            if (const auto layer = std::static_pointer_cast<Own::Layer>(each.lock()))
                layer->isSelected = on;
        }
        if (notify)
            Q_EMIT BizModel::DeviceList::instance()->signalSelectedLayersChanged(device, screen);
        return true;
    }

    const DevicePtr device;
};

struct LayerScreenControl : ScreenControl {
    using ScreenControl::ScreenControl;
    std::shared_ptr<BizModel::Layer> addLayer(
        const ScreenPtr& screen, BizModel::LayerType, BizModel::SceneType, int sourceId, int,
        const QRect& window) override
    {
        const auto owner = std::static_pointer_cast<LayerScreen>(screen.lock());
        const auto layer = owner->newLayer(sourceId, window);
        owner->add(layer);
        Q_EMIT BizModel::DeviceList::instance()->signalLayerAdded(device, screen, layer);
        return layer;
    }
    bool removeLayers(
        const ScreenPtr& screen, const Layers& layers,
        QList<std::pair<BizModel::s_ScreenLayerId, QString>>&) override
    {
        const auto owner = std::static_pointer_cast<LayerScreen>(screen.lock());
        for (const LayerPtr& each : layers) {
            const auto layer = std::static_pointer_cast<Layer>(each.lock());
            if (layer && owner->remove(layer))
                Q_EMIT BizModel::DeviceList::instance()->signalLayerRemoved(device, screen, layer);
        }
        Q_EMIT BizModel::DeviceList::instance()->signalSelectedLayersChanged(device, screen);
        return true;
    }
};

struct LayerControllerFactory : ControllerFactory {
    std::shared_ptr<ModelControl::Screen> createScreen(Screen::ScreenType, const DevicePtr& device) override
    {
        return std::make_shared<LayerScreenControl>(device);
    }
    std::shared_ptr<ModelControl::Layer> createLayer(BizModel::LayerType, const DevicePtr& device) override
    {
        return std::make_shared<LayerControl>(device);
    }
};

} // namespace Own
