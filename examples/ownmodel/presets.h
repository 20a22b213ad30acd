// Step 3: presets of what the screens' previews show, stored, loaded and removed by keys.
#pragma once

#include "layers.h"

#include "bizmodel/preset.h"
#include "modelcontrol/preset.h"
#include "tasksampling/samplingthread.h"

namespace Own {

using PresetPtr = std::weak_ptr<BizModel::Preset>;

struct Preset : BizModel::Preset {
    explicit Preset(quint16 slot)
        : id(slot)
    {
    }
    quint16 fileId() const override { return id; }
    FileType fileType() const override { return FileType::PresetPVW; }
    QString name() const override { return QString("Preset %1").arg(id); }

    const quint16 id;
    Bridge::SharedValue<QList<QList<std::shared_ptr<Layer>>>> scene; // a list for each screen
};

struct PresetDevice : LayerDevice {
    quint16 maxPresetCount() const override { return 20; }
    QList<PresetPtr> presets() const override
    {
        const std::lock_guard lock(mutex);
        return QList<PresetPtr>(stored.begin(), stored.end());
    }
    PresetPtr activedPreset() const override { return activePreset.get(); }
    void setActivedPreset(const PresetPtr& preset, quint16) override
    {
        if (activePreset.set(preset.lock()))
            Q_EMIT BizModel::DeviceList::instance()->signalActivedPresetKeyNoChanged(
                DeviceList::instance()->activedDevice());
    }

    void add(const std::shared_ptr<BizModel::Preset>& preset)
    {
        const std::lock_guard lock(mutex);
        stored.append(preset);
    }
    bool remove(const std::shared_ptr<BizModel::Preset>& preset)
    {
        const std::lock_guard lock(mutex);
        return stored.removeOne(preset);
    }
    void store(Preset& preset) const
    {
        QList<QList<std::shared_ptr<Layer>>> scene;
        for (const auto& screen : all)
            scene.append(copies(std::static_pointer_cast<LayerScreen>(screen)->content()));
        preset.scene.set(scene);
    }
    void load(const Preset& preset) const
    {
        const auto scene = preset.scene.get();
        for (int i = 0; i < all.size(); ++i)
            std::static_pointer_cast<LayerScreen>(all.at(i))->setContent(copies(scene.value(i)));
    }

    Bridge::SharedValue<std::shared_ptr<BizModel::Preset>> activePreset;

private:
    /// Layers change their source; those of a preset must not.
    static QList<std::shared_ptr<Layer>> copies(const QList<std::shared_ptr<Layer>>& layers)
    {
        QList<std::shared_ptr<Layer>> made;
        for (const auto& layer : layers)
            made.append(std::make_shared<Layer>(layer->place, layer->input, layer->window));
        return made;
    }

    mutable std::mutex mutex; // guards stored; never held while a signal is emitted
    QList<std::shared_ptr<BizModel::Preset>> stored;
};

struct PresetDeviceControl : DeviceControl {
    using DeviceControl::DeviceControl;
    bool createPresetFile(BizModel::File::FileType, quint16 fileId, QString&) override
    {
        const auto owner = std::static_pointer_cast<PresetDevice>(device());
        const auto preset = std::make_shared<Preset>(fileId);
        owner->store(*preset);
        owner->add(preset);
        Q_EMIT BizModel::DeviceList::instance()->signalPresetAdded(device(), preset);
        return true;
    }
    bool removeFile(const QList<std::weak_ptr<BizModel::File>>& files, QString&) override
    {
        const auto owner = std::static_pointer_cast<PresetDevice>(device());
        for (const auto& file : files) {
            const auto preset = std::dynamic_pointer_cast<BizModel::Preset>(file.lock());
            if (preset && owner->remove(preset))
                Q_EMIT BizModel::DeviceList::instance()->signalPresetRemoved(device(), preset);
            if (preset && owner->activePreset.get() == preset)
                owner->setActivedPreset({}, 0);
        }
        return true;
    }
};

struct PresetControl : ModelControl::Preset {
    explicit PresetControl(const DevicePtr& owner)
        : device(owner)
    {
    }
    bool coverPreset(const PresetPtr& preset, BizModel::File::FileType, QString& error) override
    {
        const auto stored = std::static_pointer_cast<Own::Preset>(preset.lock());
        if (!stored)
            return refuse(error);
        std::static_pointer_cast<PresetDevice>(device.lock())->store(*stored);
        Q_EMIT BizModel::DeviceList::instance()->signalPresetCovered(device, preset);
        return true;
    }
    bool updatePresetModelData(const PresetPtr& preset, const Screens&, QString& error) override
    {
        const auto stored = std::static_pointer_cast<Own::Preset>(preset.lock());
        if (!stored)
            return refuse(error);
        const auto owner = std::static_pointer_cast<PresetDevice>(device.lock());
        owner->load(*stored);
        Q_EMIT BizModel::DeviceList::instance()->signalDeviceScreenLayersChanged(
            owner->screens(RegularScreens), 0);
        return true;
    }
    /// Another key may have removed the preset meanwhile.
    static bool refuse(QString& error)
    {
        error = "The preset is gone.";
        return false;
    }

    const DevicePtr device;
};

/// What goes to the device itself: here nobody is there, and a load has been taken when it comes.
struct SamplingThread : TaskSampling::SamplingThread {
    using TaskSampling::SamplingThread::appendData;
    bool setSamplingType(TaskSampling::SamplingType type) override
    {
        return type == TaskSampling::LoadPreset;
    }
    bool appendData(const std::shared_ptr<TaskSampling::s_LoadPresetSampling>& sample) override
    {
        const auto device = sample->pCurDevice.lock();
        for (const PresetPtr& each : device ? device->presets() : QList<PresetPtr>()) {
            const auto preset = each.lock(); // another key may have removed it
            if (preset && preset->fileId() == sample->nFileID)
                device->setActivedPreset(preset, sample->nFileID);
        }
        return true;
    }
};

struct PresetControllerFactory : LayerControllerFactory {
    std::shared_ptr<ModelControl::Device> createDevice(const DevicePtr& device) override
    {
        return std::make_shared<PresetDeviceControl>(device);
    }
    std::shared_ptr<ModelControl::Preset> createPreset(const DevicePtr& device) override
    {
        return std::make_shared<PresetControl>(device);
    }
};

} // namespace Own
