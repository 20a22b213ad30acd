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
    virtual void setPresetOperateMode(Enum::Preset::PresetOptMode mode) { m_presetMode = mode; }

Q_SIGNALS:
    /// @name Devices
    /// @{
    void signalActivedDeviceChanged();
    void signalDeviceGroupInfoChanged();
    void signalDeviceRemoved(std::shared_ptr<Orvane::BizModel::Device> device);
    /// The address changed: from `Device::preIPMacSn` to `Device::ipMacSn`.
    void signalDeviceIPChanged(std::weak_ptr<Orvane::BizModel::Device> device);
    /// @}

    /// @name Screens
    /// @{
    void signalSelectedRegularScreensChanged(std::weak_ptr<Orvane::BizModel::Device> device);
    void signalScreenIndexChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen);
    void signalActivedScreenChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen);
    void signalScreenAdded(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen);
    /// @p screen was moved to the place of @p target.
    void signalScreenMoved(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen,
        std::weak_ptr<Orvane::BizModel::Screen> target);
    void signalScreenRemoved(
        std::weak_ptr<Orvane::BizModel::Device> device, std::shared_ptr<Orvane::BizModel::Screen> screen);
    void signalScreenNameChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen);
    void signalScreenPGMFreezeChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen);
    void signalScreenFTBChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen);
    void signalSwapStateChanged(std::weak_ptr<Orvane::BizModel::Device> device);
    void signalScreenPGMEditChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen);
    /// The transition's mix type or time changed.
    void signalScreenEffectChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen);
    void signalLoadToPGMStateChanged(std::weak_ptr<Orvane::BizModel::Device> device);
    /// @}

    /// @name Layers
    /// @{
    void signalLayerAdded(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen,
        std::weak_ptr<Orvane::BizModel::Layer> layer);
    void signalLayerRemoved(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen,
        std::shared_ptr<Orvane::BizModel::Layer> layer);
    void signalSelectedLayersChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen);
    /// The layers of @p screens changed as a whole, by a take or a preset. @p type is a
    /// `NotifyUpdateLayer` value.
    void signalDeviceScreenLayersChanged(QList<std::weak_ptr<Orvane::BizModel::Screen>> screens, int type);
    void signalLayerNameChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen,
        std::weak_ptr<Orvane::BizModel::Layer> layer);
    void signalLayerSourceChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Screen> screen,
        std::weak_ptr<Orvane::BizModel::Layer> layer);
    /// @}

    /// @name Inputs
    /// @{
    void signalInterfaceNameChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Interface> interface);
    void signalInputAdded(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Input> input);
    void signalInputRemoved(
        std::weak_ptr<Orvane::BizModel::Device> device, std::shared_ptr<Orvane::BizModel::Input> input);
    void signalSelectedInputChanged(std::weak_ptr<Orvane::BizModel::Device> device);
    void signalInterfaceOverLoadChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Interface> interface);
    /// The interface gained or lost its signal.
    void signalInterfaceSignalChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Interface> interface);
    void signalConnectorCapacityChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Subcard> subcard,
        std::weak_ptr<Orvane::BizModel::Connector> connector);
    /// @}

    /// @name Presets and files
    /// @{
    void signalPresetAdded(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Preset> preset);
    void signalPresetRemoved(
        std::weak_ptr<Orvane::BizModel::Device> device, std::shared_ptr<Orvane::BizModel::Preset> preset);
    /// All presets of the device were removed.
    void signalPresetCleared(std::weak_ptr<Orvane::BizModel::Device> device);
    /// A file of the device was renamed.
    void signalNameChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::File> file);
    void signalActivedPresetKeyNoChanged(std::weak_ptr<Orvane::BizModel::Device> device);
    /// The preset was overwritten.
    void signalPresetCovered(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::Preset> preset);
    void signalKeypadChanged(
        std::weak_ptr<Orvane::BizModel::Device> device, std::weak_ptr<Orvane::BizModel::File> file);
    /// @p page is 0-based. Emitted by the console and by the application, for the other's sake.
    void signalPageChanged(int page);
    /// @}

    /// @name Notices to the user
    /// Emitted by the console, shown by the application; the texts are translated already. Only the answer
    /// to a message box goes the other way.
    /// @{
    void signalShowStatusBarMsg(Orvane::BizModel::StatusBarMsgType type, QString text, int durationMs);
    void signalShowWaitingDialog(QString text);
    void signalHideWaitingDialog();
    void signalShowFramelessMessageBoxMsg(Orvane::BizModel::FramelessMessageBoxMsgType type, QString text);
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
