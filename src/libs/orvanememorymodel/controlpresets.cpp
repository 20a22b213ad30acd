#include "control_p.h"
#include "presets.h"

namespace Orvane::MemoryModel {

namespace {

ControlResult noPreset(FileType type, quint16 fileId)
{
    const QString name = type == FileType::PresetPGM ? QStringLiteral("PGM") : QStringLiteral("PVW");
    return ControlResult::refused(
        QStringLiteral("the device has no %1 preset in slot %2").arg(name).arg(fileId));
}

} // namespace

/// Calls @p function with the change, the device and the preset; refused when one is not there.
template <typename Function>
ControlResult Control::onPreset(const QString& device, FileType type, quint16 fileId, Function function)
{
    return onDevice(device, [&](Change& change, const auto& owner) {
        const std::shared_ptr<MemoryPreset> preset = owner->preset(change, type, fileId);
        return preset ? resultOf(function, change, owner, preset) : noPreset(type, fileId);
    });
}

ControlResult Control::addPreset(const QString& device, FileType type, quint16 fileId)
{
    return onDevice(device, [&](Change& change, const auto& owner) {
        QString error;
        const bool created = createPreset(change, m_pHub, *owner, type, fileId, error);
        return ControlResult::of(created, error);
    });
}

ControlResult Control::coverPreset(const QString& device, FileType type, quint16 fileId)
{
    return onPreset(device, type, fileId, [type](Change& change, const auto& owner, const auto& preset) {
        QString error;
        const bool covered = MemoryModel::coverPreset(change, owner, preset, type, error);
        return ControlResult::of(covered, error);
    });
}

ControlResult Control::renamePreset(const QString& device, FileType type, quint16 fileId, const QString& name)
{
    return onPreset(device, type, fileId, [&name](Change& change, const auto& owner, const auto& preset) {
        change.set(preset->data(change).name, name, &DeviceList::signalNameChanged, owner, preset);
    });
}

ControlResult Control::removePreset(const QString& device, FileType type, quint16 fileId)
{
    return onPreset(device, type, fileId, [this](Change& change, const auto& owner, const auto& preset) {
        return ControlResult::of(
            MemoryModel::removePreset(change, m_list.group(change, owner), preset),
            QStringLiteral("the preset is gone"));
    });
}

ControlResult Control::clearPresets(const QString& device)
{
    return onDevice(device, [this](Change& change, const auto& owner) {
        removeFiles(change, m_list.group(change, owner), {FileType::PresetPVW, FileType::PresetPGM});
    });
}

ControlResult Control::activatePreset(const QString& device, FileType type, quint16 fileId)
{
    return onDevice(device, [type, fileId](Change& change, const auto& owner) {
        const std::shared_ptr<MemoryPreset> preset = owner->preset(change, type, fileId);
        if (!preset && fileId != 0)
            return noPreset(type, fileId);
        owner->setActivePreset(change, preset);
        return ControlResult::done();
    });
}

} // namespace Orvane::MemoryModel
