#include "presets.h"

#include "memorydevicelist.h"

#include <utility>

namespace Orvane::MemoryModel {

using BizModel::SceneType;

bool createPreset(
    Change& change, const std::shared_ptr<ModelHub>& hub, MemoryDevice& device, FileType type, quint16 fileId,
    QString& error)
{
    PresetRecord record;
    record.type = type;
    record.id = fileId;
    record.name = QStringLiteral("Preset %1").arg(fileId);
    record.screens = presentScenes(change, device, type);
    error.clear();
    if (type != FileType::PresetPVW && type != FileType::PresetPGM)
        error = QStringLiteral("A preset cannot be of this type.");
    else if (fileId < 1 || fileId > device.maxPresetCount())
        error = QStringLiteral("The device has no such preset slot.");
    else if (device.preset(change, type, fileId))
        error = QStringLiteral("The preset slot is in use.");
    else if (record.screens.isEmpty())
        error = QStringLiteral("There is no screen to store.");
    if (!error.isEmpty())
        return false;
    const auto preset = std::make_shared<MemoryPreset>(hub, device.weak_from_this(), record);
    device.insertPreset(change, preset);
    change.announce([device = device.weak_from_this(), preset = std::weak_ptr<MemoryPreset>(preset)](
                        MemoryDeviceList& list) { Q_EMIT list.signalPresetAdded(device, preset); });
    return true;
}

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
            record.layers += layer->record(guard);
            record.layers.last().selected = false;
        }
        stored += record;
    }
    return stored;
}

} // namespace Orvane::MemoryModel
