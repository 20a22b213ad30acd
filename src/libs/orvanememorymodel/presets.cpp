#include "presets.h"

#include "transitions.h"

#include <QMap>

#include <algorithm>
#include <utility>

namespace Orvane::MemoryModel {

using BizModel::DeviceList;
using BizModel::SceneType;

namespace {

/// Colours of a console's keys in a keypad file.
constexpr quint8 GreenKey = 2;
constexpr quint8 YellowKey = 3;

bool isPresetType(FileType type)
{
    return type == FileType::PresetPVW || type == FileType::PresetPGM;
}

/// No device of the group keeps a removed preset as its active one.
void forgetActive(Change& change, const Devices& group, const std::shared_ptr<MemoryPreset>& preset)
{
    for (const std::shared_ptr<MemoryDevice>& member : group) {
        if (member->data(change).activePreset == preset)
            member->setActivePreset(change, nullptr);
        if (member->data(change).openLoad.formerPreset == preset)
            member->data(change).openLoad.formerPreset.reset();
    }
}

} // namespace

QList<PresetScreenRecord> presentScenes(const Guard& guard, const MemoryDevice& device, FileType type)
{
    constexpr int types = BizModel::Enum::Screen::RegularAndAUXScreens;
    MemoryDevice::Screens screens = device.takeScreens(guard, types, true);
    if (screens.isEmpty())
        screens = device.takeScreens(guard, types, false);
    const SceneType scene = type == FileType::PresetPGM ? SceneType::PGM : SceneType::PVW;
    QList<PresetScreenRecord> stored;
    for (const std::shared_ptr<MemoryScreen>& screen : std::as_const(screens)) {
        PresetScreenRecord record{screen->key(), {}};
        for (const auto& layer : std::as_const(*screen).data(guard).layers(scene)) {
            record.layers += std::as_const(*layer).data(guard);
            record.layers.last().selected = false;
        }
        stored += record;
    }
    return stored;
}

bool createPreset(
    Change& change, const std::shared_ptr<ModelHub>& hub, MemoryDevice& device, FileType type, quint16 fileId,
    QString& error)
{
    PresetRecord record;
    record.type = type;
    record.id = fileId;
    record.name = QStringLiteral("Preset %1").arg(fileId);
    record.screens = presentScenes(change, device, type);
    if (!isPresetType(type))
        error = QStringLiteral("A preset cannot be of this type.");
    else if (fileId < 1 || fileId > device.maxPresetCount())
        error = QStringLiteral("The device has no such preset slot.");
    else if (device.preset(change, type, fileId))
        error = QStringLiteral("The preset slot is in use.");
    else if (record.screens.isEmpty())
        error = QStringLiteral("There is no screen to store.");
    else {
        const auto preset = std::make_shared<MemoryPreset>(hub, device.weak_from_this(), record);
        device.insertPreset(change, preset);
        change.announce(&DeviceList::signalPresetAdded, device.weak_from_this(), preset);
        return true;
    }
    return false;
}

bool coverPreset(
    Change& change, const std::shared_ptr<MemoryDevice>& device, const std::shared_ptr<MemoryPreset>& preset,
    FileType type, QString& error)
{
    const QList<PresetScreenRecord> screens = presentScenes(change, *device, type);
    if (!isPresetType(type))
        error = QStringLiteral("A preset cannot be of this type.");
    else if (screens.isEmpty())
        error = QStringLiteral("There is no screen to store.");
    else {
        preset->data(change).screens = screens;
        change.announce(&DeviceList::signalPresetCovered, device, preset);
        return true;
    }
    return false;
}

bool removePreset(Change& change, const Devices& group, const std::shared_ptr<MemoryPreset>& preset)
{
    for (const std::shared_ptr<MemoryDevice>& member : group) {
        if (!member->data(change).presets.removeOne(preset))
            continue;
        change.announce(&DeviceList::signalPresetRemoved, member, preset);
        forgetActive(change, group, preset);
        return true;
    }
    return false;
}

void removeFiles(Change& change, const Devices& group, const QList<FileType>& types)
{
    const bool allPresets = types.contains(FileType::PresetPVW) && types.contains(FileType::PresetPGM);
    for (const std::shared_ptr<MemoryDevice>& member : group) {
        if (types.contains(FileType::keypad) && member->data(change).keypad)
            member->setKeypad(change, nullptr);
        const MemoryDevice::Presets present = member->data(change).presets;
        if (!allPresets) {
            for (const std::shared_ptr<MemoryPreset>& preset : present) {
                if (types.contains(preset->fileType()))
                    removePreset(change, group, preset);
            }
            continue;
        }
        member->data(change).presets.clear();
        change.announce(&DeviceList::signalPresetCleared, member);
        for (const std::shared_ptr<MemoryPreset>& preset : present)
            forgetActive(change, group, preset);
    }
}

std::shared_ptr<MemoryPreset> findPreset(const Guard& guard, const Devices& group, quint16 fileId)
{
    for (const std::shared_ptr<MemoryDevice>& member : group) {
        for (const FileType type : {FileType::PresetPVW, FileType::PresetPGM}) {
            if (auto preset = member->preset(guard, type, fileId))
                return preset;
        }
    }
    return nullptr;
}

SceneType loadTarget(const Guard& guard, const MemoryDevice& device)
{
    return device.data(guard).loadToPGM ? SceneType::PGM : SceneType::PVW;
}

MemoryDevice::Screens loadableScreens(
    const Guard& guard, const MemoryDevice& device, const MemoryPreset& preset,
    const MemoryDevice::Screens& wanted, QString& error)
{
    MemoryDevice::Screens screens;
    for (const PresetScreenRecord& stored : preset.data(guard).screens) {
        const std::shared_ptr<MemoryScreen> screen = device.screen(guard, stored.key);
        if (screen && wanted.contains(screen))
            screens += screen;
    }
    const bool idle = std::all_of(screens.cbegin(), screens.cend(), [&guard](const auto& screen) {
        return std::as_const(*screen).data(guard).isIdle();
    });
    if (screens.isEmpty())
        error = QStringLiteral("None of the preset's screens is there.");
    else if (!idle)
        error = QStringLiteral("A screen of the preset is busy.");
    return idle ? screens : MemoryDevice::Screens();
}

void loadPreset(
    Change& change, const MemoryDevice& device, const MemoryPreset& preset,
    const MemoryDevice::Screens& screens)
{
    const SceneType target = loadTarget(change, device);
    for (const PresetScreenRecord& stored : preset.data(change).screens) {
        const std::shared_ptr<MemoryScreen> screen = device.screen(change, stored.key);
        if (!screen || !screens.contains(screen))
            continue;
        MemoryScreen::Layers& scene = screen->data(change).layers(target);
        scene.clear();
        for (LayerRecord layer : stored.layers) {
            if (!device.data(change).inputs.contains(layer.inputId))
                layer.inputId = 0;
            scene += screen->makeLayer(target, layer);
        }
    }
    announceLayersChanged(change, screens, LayersChangedBy::LoadPreset);
}

ProtoModel::File::s_KeypadInfo keypadAfterLoad(
    const Guard& guard, const Devices& group, const MemoryPreset& preset, const QList<quint32>& screenIds)
{
    const MemoryDevice& device = *group.first();
    const std::shared_ptr<BizModel::Keypad>& keypad = device.data(guard).keypad;
    ProtoModel::File::s_KeypadInfo info = keypad ? keypad->keypadInfo() : ProtoModel::File::s_KeypadInfo();
    const bool toProgram = loadTarget(guard, device) == SceneType::PGM;
    ProtoModel::File::s_PresetInfo& history = info.presetInfo;
    quint8& last = toProgram ? history.lastPGMPreset : history.lastPVWPreset;
    history.beforeOnePreset = std::exchange(last, quint8(preset.fileId()));
    (toProgram ? history.pgmScn : history.pvwScn) = screenIds.toVector();

    QMap<quint8, ProtoModel::File::s_KeypadFile> keys;
    for (const ProtoModel::File::s_KeypadFile& key : std::as_const(info.keypadArray))
        keys.insert(key.buttonId, key);
    QMap<quint8, ProtoModel::File::s_KeypadFile> present;
    for (const std::shared_ptr<MemoryDevice>& member : group) {
        for (const std::shared_ptr<MemoryPreset>& each : std::as_const(*member).data(guard).presets) {
            const quint8 button = quint8(each->fileId());
            // The console that the key belongs to is kept.
            ProtoModel::File::s_KeypadFile key = keys.value(button);
            key.buttonId = button;
            key.buttonColor = each->fileId() == preset.fileId() ? GreenKey : YellowKey;
            present.insert(button, key);
        }
    }
    info.keypadArray = present.values().toVector();
    return info;
}

} // namespace Orvane::MemoryModel
