#include "memorydevice.h"

#include "operationtext.h"

#include <algorithm>
#include <utility>

namespace Orvane::MemoryModel {

using BizModel::DeviceList;

QList<std::weak_ptr<BizModel::Preset>> MemoryDevice::presets() const
{
    return weakList<BizModel::Preset>(data(Guard(*m_pHub)).presets);
}

void MemoryDevice::setActivedPreset(const std::weak_ptr<BizModel::Preset>& preset, quint16 fileId)
{
    const QString arguments = deviceText(weak_from_this()) + QStringLiteral(" preset=%1").arg(fileId);
    if (m_pHub->operations.perform(Operation::SetActivedPreset, arguments))
        return;
    Change change(*m_pHub);
    const std::shared_ptr<MemoryPreset> present = own(change, preset);
    if (present && present->fileId() == fileId)
        setActivePreset(change, present);
}

bool MemoryDevice::editPresetValidityCheck(const QString& text, QString& error) const
{
    const auto refuse = [&](const QString& reason) {
        error = text + QStringLiteral(": ") + reason;
        return false;
    };
    if (const auto failure = m_pHub->operations.perform(
            Operation::EditPresetValidityCheck, QStringLiteral("device=%1").arg(ipMacSn())))
        return refuse(*failure);
    const Guard guard(*m_pHub);
    const Data& device = data(guard);
    if (device.upgrading)
        return refuse(QStringLiteral("the device is being upgraded."));
    const bool idle =
        std::all_of(device.screens.cbegin(), device.screens.cend(), [&guard](const auto& screen) {
            return screen->data(guard).isIdle();
        });
    return idle || refuse(QStringLiteral("a transition is running."));
}

QList<std::weak_ptr<BizModel::File>> MemoryDevice::files(FileType type) const
{
    const Guard guard(*m_pHub);
    const std::shared_ptr<BizModel::Keypad>& keypad = data(guard).keypad;
    if (type == FileType::keypad)
        return keypad ? QList<std::weak_ptr<BizModel::File>>{keypad} : QList<std::weak_ptr<BizModel::File>>();
    return weakList<BizModel::File>(
        data(guard).presets, [type](const auto& preset) { return preset.fileType() == type; });
}

void MemoryDevice::addKeypadFile(const std::shared_ptr<BizModel::Keypad>& keypad)
{
    const QString arguments = deviceText(weak_from_this());
    if (m_pHub->operations.perform(Operation::AddKeypadFile, arguments) || !keypad)
        return;
    Change change(*m_pHub);
    setKeypad(change, keypad);
}

void MemoryDevice::setKeypad(Change& change, const std::shared_ptr<BizModel::Keypad>& keypad)
{
    data(change).keypad = keypad;
    change.announce(&DeviceList::signalKeypadChanged, weak_from_this(), keypad);
}

void MemoryDevice::setActivePreset(Change& change, const std::shared_ptr<MemoryPreset>& preset)
{
    change.set(
        data(change).activePreset, preset, &DeviceList::signalActivedPresetKeyNoChanged, weak_from_this());
}

void MemoryDevice::beginLoad(Change& change, quint16 fileId)
{
    PresetLoad& load = data(change).openLoad;
    if (load.done == PresetLoad::Half::RefusedByModel && load.fileId == fileId)
        load = {};
}

bool MemoryDevice::loadedByDevice(Change& change, const std::shared_ptr<MemoryPreset>& preset, quint16 fileId)
{
    Data& device = data(change);
    if (device.openLoad.done == PresetLoad::Half::RefusedByModel && device.openLoad.fileId == fileId) {
        device.openLoad = {};
        return false;
    }
    if (preset) {
        device.openLoad = {PresetLoad::Half::ToldToDevice, fileId, device.activePreset};
        setActivePreset(change, preset);
    }
    return true;
}

void MemoryDevice::loadedByModel(Change& change, quint16 fileId)
{
    PresetLoad& load = data(change).openLoad;
    // A later load's half stays for its own second half.
    if (load.done == PresetLoad::Half::RefusedByModel || load.fileId == fileId)
        load = {};
}

void MemoryDevice::refusedByModel(Change& change, quint16 fileId)
{
    Data& device = data(change);
    const PresetLoad load = std::exchange(device.openLoad, PresetLoad());
    if (load.done == PresetLoad::Half::ToldToDevice && load.fileId == fileId)
        setActivePreset(change, load.formerPreset);
    else
        device.openLoad = {PresetLoad::Half::RefusedByModel, fileId, nullptr};
}

void MemoryDevice::insertPreset(Change& change, const std::shared_ptr<MemoryPreset>& preset)
{
    Presets& all = data(change).presets;
    const auto behind = std::find_if(all.begin(), all.end(), [&preset](const auto& each) {
        return each->fileType() != preset->fileType() ? each->fileType() > preset->fileType()
                                                      : each->fileId() > preset->fileId();
    });
    all.insert(behind, preset);
}

} // namespace Orvane::MemoryModel
