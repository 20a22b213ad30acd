#pragma once

#include "keygroup_p.h"
#include "orvanepresetcommand.h"
#include "presetmodes_p.h"
#include "serialjobs_p.h"

#include "bizmodel/preset.h"
#include "modelcontrol/preset.h"

#include <map>
#include <memory>
#include <mutex>

namespace Orvane::ECProxy::Client::Internal {

class OrvanePresetCommandPrivate {
public:
    OrvanePresetCommandPrivate(
        OrvanePresetCommand* command, Command& presetKeys, PresetModes& modes, KeyGroup& keys)
        : m_pOrvanePresetCommand(command)
        , m_presetKeys(presetKeys)
        , m_modes(modes)
        , m_keys(keys)
    {
    }

    // What a preset key does, by mode. False when it was refused.

    bool savePreset(const quint32& ecKey);
    bool loadPreset(const quint32& ecKey, bool bound);
    bool clearPreset(const quint32& ecKey);
    bool clearAllPresets();

    // Items.

    void updateECCommandItems();
    /// The preset on the key; empty when the slot is free.
    PresetPtr findPresetByEckey(const quint32& ecKey) const;
    /// Frees the key of a preset that is gone, among the items of its device.
    void unbindRemovedPreset(const BizModel::Device& device, const BizModel::Preset& preset);
    /// Whether the keys show the presets of the device.
    static bool isOfActivedGroup(const WeakDevice& device);
    QMap<quint32, quint32> presetKeyMapCopy() const;

    OrvanePresetCommand* const m_pOrvanePresetCommand;
    Command& m_presetKeys;
    PresetModes& m_modes;
    KeyGroup& m_keys;

private:
    /// A slot and the presets in it, at most one of each device and type.
    struct KeyPreset {
        QList<QPair<quint64, quint32>> ids;
        QStringList names;
        /// The last device that gave a name.
        const BizModel::Device* namedBy = nullptr;
        bool isActived = false;
    };
    using KeyPresets = std::map<int, KeyPreset>; // by slot

    static KeyPresets readPresets(const BizModel::Device& device);
    void bindPresets(const QString& ip, const KeyPresets& presets);

    /// The device's preset with that file id.
    static PresetPtr presetOf(const BizModel::Device& device, quint64 fileId);
    /// Stores the present preview under that file id, over what is there.
    static bool storePreset(const DevicePtr& device, quint16 fileId);
    /// Applies the preset to the model and gives the device the new keypad file. Runs on a pool thread.
    static void updatePresetModel(
        const WeakDevice& device, const WeakPreset& preset, const ModelControl::Preset::Screens& screens,
        const ProtoModel::File::s_KeypadInfo& keypadInfo);

    // m_keyMapMutex guards presetKeyMap, the file ids by slot.
    mutable std::mutex m_keyMapMutex;
    QMap<quint32, quint32> presetKeyMap;

    /// The model updates of loads, in the order of the key presses.
    SerialJobs m_modelUpdates;
};

} // namespace Orvane::ECProxy::Client::Internal
