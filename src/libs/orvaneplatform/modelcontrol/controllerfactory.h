#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/bizmodel/fwd.h"
#include "orvaneplatform/orvaneplatform_global.h"

#include <QtGlobal>

#include <memory>

namespace Orvane::ModelControl {

class Device;
class Layer;
class Preset;
class Screen;

/// Makes the host's controllers. The host creates its implementation before it starts the console and
/// destroys it after the console's threads have ended. Members are called on any thread, on several at once,
/// and return an empty pointer when the device is gone or there is no such controller. Models
/// without layers or presets leave out their controllers.
class ORVANEPLATFORM_EXPORT ControllerFactory {
public:
    virtual ~ControllerFactory();

    /// The factory created last of those that live, null when there is none. Any thread.
    static ControllerFactory* instance();

    /// Controller of the device.
    virtual std::shared_ptr<Device> createDevice(const std::weak_ptr<BizModel::Device>& device) = 0;
    /// Controller of the device's screens of one type.
    virtual std::shared_ptr<Screen> createScreen(
        BizModel::Enum::Screen::ScreenType type, const std::weak_ptr<BizModel::Device>& device) = 0;
    /// Controller of the device's layers of one type; none unless overridden.
    virtual std::shared_ptr<Layer> createLayer(
        BizModel::LayerType type, const std::weak_ptr<BizModel::Device>& device);
    /// Controller of the device's presets; none unless overridden.
    virtual std::shared_ptr<Preset> createPreset(const std::weak_ptr<BizModel::Device>& device);

protected:
    /// Makes this factory the one that `instance` answers.
    ControllerFactory();

private:
    Q_DISABLE_COPY_MOVE(ControllerFactory)
};

} // namespace Orvane::ModelControl
