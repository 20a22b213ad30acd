#include "control_p.h"
#include "presets.h"

namespace Orvane::MemoryModel {

/// Calls @p function with the change, the device and the preset; false when one is not there.
template <typename Function>
bool Control::onPreset(const QString& device, FileType type, quint16 fileId, Function function)
{
    return onDevice(device, [&](Change& change, const auto& owner) {
        const std::shared_ptr<MemoryPreset> preset = owner->preset(change, type, fileId);
        return preset && function(change, owner, preset);
    });
}

bool Control::addPreset(const QString& device, FileType type, quint16 fileId)
{
    return onDevice(device, [&](Change& change, const auto& owner) {
        QString error;
        return createPreset(change, m_pHub, *owner, type, fileId, error);
    });
}

bool Control::coverPreset(const QString& device, FileType type, quint16 fileId)
{
    return onPreset(device, type, fileId, [type](Change& change, const auto& owner, const auto& preset) {
        QString error;
        return MemoryModel::coverPreset(change, owner, preset, type, error);
    });
}

bool Control::renamePreset(const QString& device, FileType type, quint16 fileId, const QString& name)
{
    return onPreset(device, type, fileId, [&name](Change& change, const auto& owner, const auto& preset) {
        return setAndAnnounce(
            change, preset->data(change).name, name, owner, std::shared_ptr<BizModel::File>(preset),
            &BizModel::DeviceList::signalNameChanged);
    });
}

bool Control::removePreset(const QString& device, FileType type, quint16 fileId)
{
    return onPreset(device, type, fileId, [this](Change& change, const auto& owner, const auto& preset) {
        return MemoryModel::removePreset(change, m_list.group(change, owner), preset);
    });
}

bool Control::clearPresets(const QString& device)
{
    return onDevice(device, [this](Change& change, const auto& owner) {
        removeFiles(change, m_list.group(change, owner), {FileType::PresetPVW, FileType::PresetPGM});
        return true;
    });
}

bool Control::activatePreset(const QString& device, FileType type, quint16 fileId)
{
    return onDevice(device, [type, fileId](Change& change, const auto& owner) {
        const std::shared_ptr<MemoryPreset> preset = owner->preset(change, type, fileId);
        if (!preset && fileId != 0)
            return false;
        owner->setActivePreset(change, preset);
        return true;
    });
}

} // namespace Orvane::MemoryModel
