#include "bridge/itemsamplingthread.h"

namespace Orvane::Bridge {

ItemSamplingThread::ItemSamplingThread() = default;
ItemSamplingThread::~ItemSamplingThread() = default;

bool ItemSamplingThread::setSamplingType(TaskSampling::SamplingType type)
{
    return type == TaskSampling::LoadPreset;
}

bool ItemSamplingThread::appendData(const std::shared_ptr<TaskSampling::s_LoadPresetSampling>& sampling)
{
    const auto device =
        sampling ? std::dynamic_pointer_cast<DeviceItem>(sampling->pCurDevice.lock()) : nullptr;
    const auto presets = device ? device->presetList() : DeviceItem::PresetList();
    for (const std::shared_ptr<PresetItem>& preset : presets) {
        if (preset->fileId() != sampling->nFileID)
            continue;
        if (!sendLoad(*device, *preset))
            return false;
        device->setActivedPreset(preset, preset->fileId());
        return true;
    }
    return false; // another key has removed it meanwhile
}

bool ItemSamplingThread::sendLoad(DeviceItem&, const PresetItem&)
{
    return true;
}

} // namespace Orvane::Bridge
