#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/bizmodel/fwd.h"
#include "orvaneplatform/bizmodel/metatypes.h"
#include "orvaneplatform/orvaneplatform_global.h"

#include <QList>
#include <QMessageBox>
#include <QObject>
#include <QString>

#include <atomic>
#include <memory>

namespace Orvane::BizModel {

/// The processors that the application controls, the place where every change of the model is announced,
/// and the way for notices to reach the user.
///
/// The host creates its implementation before it starts the console, and destroys it after the console's
/// threads have ended: `instance` hands it out from the first line of the constructor to the last of the
/// destructor.
///
/// To be implemented: `activedDevice`. The rest has an answer of its own that is right for devices without a
/// group.
///
/// Threads: queries and the preset mode are called from any thread. Signals may be emitted on any thread,
/// but never while a lock is held that a query takes; receivers are connected with automatic connections,
/// so they run on the thread that they live on.
class ORVANEPLATFORM_EXPORT DeviceList : public QObject {
    Q_OBJECT
public:
    ~DeviceList() override;

    /// The list created last of those that live, null when there is none. Any thread.
    static DeviceList* instance();

    /// The device that the application shows and the console works on; empty when there is none.
    virtual std::weak_ptr<Device> activedDevice() const = 0;
    /// True while an upgrade for compatibility with older devices runs; the console ignores keys then. Never
    /// unless overridden.
    virtual bool isCompatibleUpgrading() const { return false; }

    /// Devices of the group @p groupId, the active device among them when it is a member.
    /// `Device::defaultDeviceGroupId` stands for "in no group": the answer is the active device alone.
    /// Devices that are not online are left out unless @p includeOffline; the active device is left out
    /// when @p excludeActived. Unless overridden no group has a member but the active device.
    virtual QList<std::weak_ptr<Device>> groupDevices(
        const QString& groupId, bool includeOffline = true, bool excludeActived = false) const;
    /// The same for the group of @p device, which is the device alone when it is in no group, and empty
    /// when the device is gone. Unless overridden it is the device, then the others of its group as the
    /// first form answers them.
    virtual QList<std::weak_ptr<Device>> groupDevices(
        const std::weak_ptr<Device>& device, bool includeOffline, bool excludeActived) const;
    /// Presets of @p device, then those of the other devices of its group; empty when the device is gone.
    QList<std::weak_ptr<Preset>> groupDevicePresets(const std::weak_ptr<Device>& device) const;

    /// What the next press of a preset key does; shared by the console and the application's own keys. The
    /// list keeps what was set last, at first `Noting`, unless overridden.
    virtual Enum::Preset::PresetOptMode presetOperateMode() const { return m_presetMode; }
    /// Sets it; called by the console and by the application.
    virtual void setPresetOperateMode(Enum::Preset::PresetOptMode mode) { m_presetMode = mode; }

Q_SIGNALS:
    /// @name Devices
    /// @{

    /// Another device is the active one, or none.
    void signalActivedDeviceChanged();
    /// A device joined or left a group.
    void signalDeviceGroupInfoChanged();
    /// The device is gone; @p device is the last to hold it.
    void signalDeviceRemoved(std::shared_ptr<Orvane::BizModel::Device> device);
    /// The address changed: from `Device::preIPMacSn` to `Device::ipMacSn`.
    void signalDeviceIPChanged(std::weak_ptr<Orvane::BizModel::Device> device);
    /// @}

    /// @name Screens
    /// @{

    /// Screens of the device were selected or deselected.
    void signalSelectedRegularScreensChanged(std::weak_ptr<Orvane::BizModel::Device> device);
    /// The screen's key has another place on the console.
    void signalScreenIndexChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen);
    /// Another screen of the device is the active one; @p screen is empty for none.
    void signalActivedScreenChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen);
    /// The device has a further screen.
    void signalScreenAdded(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen);
    /// @p screen was moved to the place of @p target.
    void signalScreenMoved(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen,
        std::weak_ptr<Orvane::BizModel::Screen> target);
    /// The screen is gone.
    void signalScreenRemoved(
        std::weak_ptr<Orvane::BizModel::Device> device, std::shared_ptr<Orvane::BizModel::Screen> screen);
    /// The screen has another name.
    void signalScreenNameChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen);
    /// The screen's program was frozen, or goes on.
    void signalScreenPGMFreezeChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen);
    /// The screen's program was faded to black, or back.
    void signalScreenFTBChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen);
    /// Takes of the device exchange the scenes from now on, or no longer.
    void signalSwapStateChanged(std::weak_ptr<Orvane::BizModel::Device> device);
    /// The screen's program may be edited, or no longer.
    void signalScreenPGMEditChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen);
    /// The transition's mix type or time changed.
    void signalScreenEffectChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen);
    /// Presets of the device load to another scene.
    void signalLoadToPGMStateChanged(std::weak_ptr<Orvane::BizModel::Device> device);
    /// @}

    /// @name Layers
    /// @{

    /// A scene of the screen has a further layer.
    void signalLayerAdded(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen,
        std::weak_ptr<Orvane::BizModel::Layer> layer);
    /// The layer is gone.
    void signalLayerRemoved(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen,
        std::shared_ptr<Orvane::BizModel::Layer> layer);
    /// Layers of the screen were selected or deselected.
    void signalSelectedLayersChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen);
    /// The layers of @p screens changed as a whole, by a take or a preset. @p type is a
    /// `NotifyUpdateLayer` value.
    void signalDeviceScreenLayersChanged(QList<std::weak_ptr<Orvane::BizModel::Screen>> screens, int type);
    /// The layer has another name.
    void signalLayerNameChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen,
        std::weak_ptr<Orvane::BizModel::Layer> layer);
    /// The layer shows another source.
    void signalLayerSourceChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen,
        std::weak_ptr<Orvane::BizModel::Layer> layer);
    /// @}

    /// @name Inputs
    /// @{

    /// The interface has another name.
    void signalInterfaceNameChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Interface> interface);
    /// The device has a further input.
    void signalInputAdded(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Input> input);
    /// The input is gone.
    void signalInputRemoved(
        std::weak_ptr<Orvane::BizModel::Device> device, std::shared_ptr<Orvane::BizModel::Input> input);
    /// The application marks another input.
    void signalSelectedInputChanged(std::weak_ptr<Orvane::BizModel::Device> device);
    /// The interface's signal is more than it can take, or no longer.
    void signalInterfaceOverLoadChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Interface> interface);
    /// The interface gained or lost its signal.
    void signalInterfaceSignalChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Interface> interface);
    /// The connector carries another capacity.
    void signalConnectorCapacityChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Subcard> subcard,
        std::weak_ptr<Orvane::BizModel::Connector> connector);
    /// @}

    /// @name Presets and files
    /// @{

    /// The device has a further preset.
    void signalPresetAdded(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Preset> preset);
    /// The preset is gone.
    void signalPresetRemoved(
        std::weak_ptr<Orvane::BizModel::Device> device, std::shared_ptr<Orvane::BizModel::Preset> preset);
    /// All presets of the device were removed.
    void signalPresetCleared(std::weak_ptr<Orvane::BizModel::Device> device);
    /// A file of the device was renamed.
    void signalNameChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::File> file);
    /// Another preset of the device is the active one, or none.
    void signalActivedPresetKeyNoChanged(std::weak_ptr<Orvane::BizModel::Device> device);
    /// The preset was overwritten.
    void signalPresetCovered(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Preset> preset);
    /// The device's keypad file was replaced.
    void signalKeypadChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::File> file);
    /// @p page is 0-based. Emitted by the console and by the application, for the other's sake.
    void signalPageChanged(int page);
    /// @}

    /// @name Notices to the user
    /// Emitted by the console, shown by the application; the texts are translated already. Only the answer
    /// to a message box goes the other way.
    /// @{

    /// A message for the status bar, to be shown for that many milliseconds.
    void signalShowStatusBarMsg(Orvane::BizModel::StatusBarMsgType type, QString text, int durationMs);
    /// The user has to wait; until `signalHideWaitingDialog`.
    void signalShowWaitingDialog(QString text);
    /// The wait is over.
    void signalHideWaitingDialog();
    /// A message box, to be answered by `signalFramelessMessageBoxClosed`.
    void signalShowFramelessMessageBoxMsg(Orvane::BizModel::FramelessMessageBoxMsgType type, QString text);
    /// The user closed the message box with that button. Emitted by the application.
    void signalFramelessMessageBoxClosed(QMessageBox::StandardButton button);
    /// @}

protected:
    /// Makes this list the one that `instance` answers.
    explicit DeviceList(QObject* parent = nullptr);

private:
    Q_DISABLE_COPY_MOVE(DeviceList)

    /// Set by keys on the decoder thread, read by the application.
    std::atomic<Enum::Preset::PresetOptMode> m_presetMode{Enum::Preset::Noting};
};

} // namespace Orvane::BizModel
