#pragma once

#include "bizmodel/enums.h"
#include "bizmodel/fwd.h"
#include "orvaneplatform_global.h"

#include <QList>
#include <QString>
#include <QtGlobal>

#include <memory>

namespace Orvane::BizModel {

/// What is set up for a device rather than reported by it.
struct s_DeviceConfig {
    /// The console may show its plug-in display for this device.
    bool consolePlugin = false;
    /// Presets of this device may be loaded straight to program.
    bool loadToPGMEnabled = false;
};

/// A video processor. Any thread may call any member at any time; an answer is a snapshot.
class ORVANEPLATFORM_EXPORT Device {
public:
    using LoadToPGMStatus = Enum::Device::LoadToPGMStatus;

    /// Group id of a device that is in no group.
    static inline const QString defaultDeviceGroupId = QStringLiteral("0");
    static inline const QString genlockSource = QStringLiteral("Genlock");
    static inline const QString nullGenlock = QStringLiteral("null");

    Device() = default;
    virtual ~Device();

    /// Identity of the device; the state of the console's keys is kept under it. Opaque, not empty.
    virtual QString ipMacSn() const = 0;
    /// Identity before the last change of address.
    virtual QString preIPMacSn() const = 0;
    virtual QString groupId() const = 0;
    virtual bool onlineFlag() const = 0;
    /// True while a firmware upgrade runs.
    virtual bool isDeviceUpgrading() const = 0;
    virtual s_DeviceConfig deviceConfig() const = 0;
    bool consolePlugin() const { return deviceConfig().consolePlugin; }

    /// @name Screens
    /// @{
    /// The screen that layer and input keys work on; empty when there is none.
    virtual std::weak_ptr<Screen> activedScreen() const = 0;
    /// @p screenTypeMask combines `Enum::Screen::ScreenType` values here and below.
    virtual QList<std::weak_ptr<Screen>> screens(int screenTypeMask) const = 0;
    virtual QList<std::weak_ptr<Screen>> selectedScreen(int screenTypeMask) const = 0;
    virtual bool isScreenSelected(const std::weak_ptr<Screen>& screen) const = 0;
    /// True when several screens may be selected at once.
    virtual bool isMultiScreens() const = 0;
    /// True when no further screen of the type is possible.
    virtual bool isScreenLimited(Enum::Screen::ScreenType type) const = 0;
    /// A new screen with default settings that is not part of the device yet; empty when none is possible.
    virtual std::shared_ptr<Screen> createDefaultScreen(Enum::Screen::ScreenType type) = 0;
    /// The first output that no screen uses; empty when all are in use.
    virtual std::weak_ptr<Output> firstUnsedOutput() const = 0;
    /// Adds @p screen to the screens whose picture the application shows.
    virtual void appendViewingScreen(const std::weak_ptr<Screen>& screen) = 0;
    /// @}

    /// @name Transitions
    /// @{
    /// True while a take is running; a transition by the T-Bar does not count.
    virtual bool isTaking() const = 0;
    /// True when a take exchanges program and preview rather than copying the preview.
    virtual bool swapEnable() const = 0;
    /// @}

    /// @name Layers and inputs
    /// @{
    /// True when no further layer is possible in the scene.
    virtual bool isLayerLimited(SceneType scene) const = 0;
    /// Inputs that a layer can be bound to, in no particular order.
    virtual QList<std::weak_ptr<Input>> validInputs() const = 0;
    /// Empty when there is no input with the interface id.
    virtual std::weak_ptr<Input> findInput(quint32 interfaceId) const = 0;
    /// The connector that the interface is on; empty when there is none.
    virtual std::weak_ptr<Connector> getConnector(const s_InterfaceFullId& interfaceFullId) const = 0;
    /// @}

    /// @name Presets and files
    /// @{
    /// Preset file ids run from 1 to this number.
    virtual quint16 maxPresetCount() const = 0;
    virtual QList<std::weak_ptr<Preset>> presets() const = 0;
    /// The preset that was loaded or saved last; empty when there is none.
    virtual std::weak_ptr<Preset> activedPreset() const = 0;
    /// 1-based slot of the active preset, 0 when there is none.
    virtual int activedPresetKeyNo() const = 0;
    virtual void setActivedPreset(const std::weak_ptr<Preset>& preset, quint16 fileId) = 0;
    /// Whether presets may be changed now. If not, @p error is why, in words for the user that start with
    /// @p text.
    virtual bool editPresetValidityCheck(const QString& text, QString& error) const = 0;
    /// True when presets load straight to program.
    virtual bool loadToPGMEnable() const = 0;
    /// Files of type `keypad` are `Keypad` objects.
    virtual QList<std::weak_ptr<File>> files(Enum::File::FileType type) const = 0;
    /// Makes @p keypad the device's keypad file, in the place of an earlier one.
    virtual void addKeypadFile(const std::shared_ptr<Keypad>& keypad) = 0;
    /// @}

private:
    Q_DISABLE_COPY_MOVE(Device)
};

} // namespace Orvane::BizModel
