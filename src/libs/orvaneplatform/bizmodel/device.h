#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/bizmodel/fwd.h"
#include "orvaneplatform/orvaneplatform_global.h"

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
///
/// To be implemented: who the device is and which screens it has. Everything else has an answer of its own,
/// which is that there is none, that it is refused, or what follows from the other members.
class ORVANEPLATFORM_EXPORT Device {
public:
    /// The enumeration, by its short name.
    using LoadToPGMStatus = Enum::Device::LoadToPGMStatus;

    /// Group id of a device that is in no group.
    static inline const QString defaultDeviceGroupId = QStringLiteral("0");
    /// Names of the sources of genlock; for hosts, the console does not look at them.
    /// @{
    static inline const QString genlockSource = QStringLiteral("Genlock");
    static inline const QString nullGenlock = QStringLiteral("null");
    /// @}

    Device() = default;
    virtual ~Device();

    /// Identity of the device; the state of the console's keys is kept under it. Opaque, not empty.
    virtual QString ipMacSn() const = 0;
    /// Identity before the last change of address; the present one unless overridden.
    virtual QString preIPMacSn() const { return ipMacSn(); }
    /// No group unless overridden.
    virtual QString groupId() const { return defaultDeviceGroupId; }
    /// Online unless overridden.
    virtual bool onlineFlag() const { return true; }
    /// True while a firmware upgrade runs; never unless overridden.
    virtual bool isDeviceUpgrading() const { return false; }
    /// Allows nothing unless overridden.
    virtual s_DeviceConfig deviceConfig() const { return {}; }
    /// Whether the device's configuration shows the application's plug-in on the console.
    bool consolePlugin() const { return deviceConfig().consolePlugin; }

    /// @name Screens
    /// @{

    /// The screen that layer and input keys work on; empty when there is none.
    virtual std::weak_ptr<Screen> activedScreen() const = 0;
    /// @p screenTypeMask combines `Enum::Screen::ScreenType` values here and below.
    virtual QList<std::weak_ptr<Screen>> screens(int screenTypeMask) const = 0;
    /// Those of `screens` that say they are selected, unless overridden.
    virtual QList<std::weak_ptr<Screen>> selectedScreen(int screenTypeMask) const;
    /// Whether @p screen is one of `selectedScreen`, unless overridden.
    virtual bool isScreenSelected(const std::weak_ptr<Screen>& screen) const;
    /// True when several screens may be selected at once; one at a time unless overridden.
    virtual bool isMultiScreens() const { return false; }
    /// True when no further screen of the type is possible; never possible unless overridden.
    virtual bool isScreenLimited(Enum::Screen::ScreenType type) const;
    /// A new screen with default settings that is not part of the device yet; empty when none is possible,
    /// and unless overridden. The console makes it part of the device by `ModelControl::AsyncCreateScreen`.
    virtual std::shared_ptr<Screen> createDefaultScreen(Enum::Screen::ScreenType type);
    /// The first output that no screen uses; empty when all are in use, and unless overridden.
    virtual std::weak_ptr<Output> firstUnsedOutput() const { return {}; }
    /// Adds @p screen to the screens whose picture the application shows; ignored unless overridden.
    virtual void appendViewingScreen(const std::weak_ptr<Screen>& screen);
    /// @}

    /// @name Transitions
    /// @{

    /// True while a take is running; a transition by the T-Bar does not count. Whether one of the screens is
    /// `Taking`, unless overridden.
    virtual bool isTaking() const;
    /// True when a take exchanges program and preview rather than copying the preview; never unless
    /// overridden.
    virtual bool swapEnable() const { return false; }
    /// @}

    /// @name Layers and inputs
    /// @{

    /// True when no further layer is possible in the scene. Unless overridden the device sets no limit of
    /// its own: those of the screen and its sub-cards remain.
    virtual bool isLayerLimited(SceneType scene) const;
    /// Inputs that a layer can be bound to, in no particular order; none unless overridden.
    virtual QList<std::weak_ptr<Input>> validInputs() const { return {}; }
    /// The one of `validInputs` with the interface id, unless overridden; empty when there is none.
    virtual std::weak_ptr<Input> findInput(quint32 interfaceId) const;
    /// The connector that the interface is on; empty when there is none, and unless overridden. A layer key
    /// makes a layer only for an input whose connector has the key's capacity.
    virtual std::weak_ptr<Connector> getConnector(const s_InterfaceFullId& interfaceFullId) const;
    /// @}

    /// @name Presets and files
    /// @{

    /// Preset file ids run from 1 to this number; 0, for no presets, unless overridden.
    virtual quint16 maxPresetCount() const { return 0; }
    /// None unless overridden.
    virtual QList<std::weak_ptr<Preset>> presets() const { return {}; }
    /// The preset that was loaded or saved last; empty when there is none, and unless overridden.
    virtual std::weak_ptr<Preset> activedPreset() const { return {}; }
    /// 1-based slot of the active preset, 0 when there is none; the file id of `activedPreset` unless
    /// overridden.
    virtual int activedPresetKeyNo() const;
    /// Called after a save by a key. After a load the model itself makes the preset active. Ignored unless
    /// overridden.
    virtual void setActivedPreset(const std::weak_ptr<Preset>& preset, quint16 fileId);
    /// Whether presets may be changed now. If not, @p error is why, in words for the user that start with
    /// @p text. Always unless overridden.
    virtual bool editPresetValidityCheck(const QString& text, QString& error) const;
    /// True when presets load straight to program; never unless overridden.
    virtual bool loadToPGMEnable() const { return false; }
    /// Files of type `keypad` are `Keypad` objects. Unless overridden, the ones of `presets` that are of the
    /// type, and no keypad file.
    virtual QList<std::weak_ptr<File>> files(Enum::File::FileType type) const;
    /// Makes @p keypad the device's keypad file, in the place of an earlier one; ignored unless overridden.
    virtual void addKeypadFile(const std::shared_ptr<Keypad>& keypad);
    /// @}

private:
    Q_DISABLE_COPY_MOVE(Device)
};

} // namespace Orvane::BizModel
