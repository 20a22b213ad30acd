#pragma once

#include "ipresetcommandex.h"

#include <QMap>

namespace Orvane::ECProxy::Client {

namespace Internal {
class KeyGroup;
class OrvanePresetCommandPrivate;
class PresetModes;
} // namespace Internal

/// Turns preset keys into preset files of the active device.
///
/// A key on a page stands for a slot, page times page size plus place; slot b holds the preset with the file
/// id b + 1. Pressing the key stores the present preview there, removes the preset or loads it, as the
/// application's preset mode says. The keys show the presets of the device and of its group: green for the
/// device's active one, yellow for the others, dark for a free slot.
///
/// Made and called by the preset command, whose keys and page it works with. Threads: any. Loading goes on
/// after the press, on Qt's global thread pool for the model and on the sampling thread for the device;
/// destruction waits for a model update that has begun and drops those that have not.
class ORVANEECPROXYCLIENT_EXPORT OrvanePresetCommand : public IPresetCommandEx {
    Q_OBJECT

public:
    /// Works with the keys, the page and the mode of `presetKeys`, which owns this object and the others.
    OrvanePresetCommand(
        Command& presetKeys, Internal::PresetModes& modes, Internal::KeyGroup& keys,
        QObject* parent = nullptr);
    ~OrvanePresetCommand() override;

    /// The same as the preset command's.
    QString name() const override;
    int maxPage() override;
    int pageSize() const override;
    /// Copies of the active device's items, all of one moment.
    QList<std::shared_ptr<ECCommandItem>> commandItems() const override;
    using Command::updatePageOled;
    bool updatePageOled(const quint32& oledECKey, const quint32& pageIndex) override;
    void updateKeyboard() override;
    bool isAllowedKeyReleased(const quint16& ecKey) override;

    bool selectPresetPressed(const quint32& ecKey) override;
    /// Stores, removes or loads. @p bound changes nothing. Returns true.
    bool selectPresetPressed(const quint32& ecKey, bool bound);
    bool clearPresetsPressed() override;
    /// Takes over the preset command's page.
    void updatePageIndex() override;

    /// Binds the presets of the active device's group to its keys and gives the keys their looks.
    void updateECCommandItems();
    /// File ids by slot, as of the last binding.
    QMap<quint32, quint32> presetKeyMap() const;

public Q_SLOTS:
    /// The notifications that concern these keys; see `Command`.
    /// @{
    void slotDeviceRemoved(DevicePtr device) override;
    void slotDevicePresetAdded(WeakDevice device, WeakPreset preset) override;
    void slotDevicePresetRemoved(WeakDevice device, PresetPtr preset) override;
    void slotDeviceDevicePresetCleared(WeakDevice device) override;
    void slotPresetNameChanged(WeakDevice device, WeakFile file) override;
    void slotDevicePresetSelectChanged(WeakDevice device) override;
    void slotDevicePresetCovered(WeakDevice device, WeakPreset preset) override;
    /// @}

private:
    const std::unique_ptr<Internal::OrvanePresetCommandPrivate> d;
};

} // namespace Orvane::ECProxy::Client
