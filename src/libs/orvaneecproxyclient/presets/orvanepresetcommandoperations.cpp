// What a preset key does to the device's preset files.
#include "orvanepresetcommand_p.h"

#include "consumetime_p.h"
#include "log_p.h"
#include "modelaccess_p.h"
#include "presetgroup_p.h"

#include "bizmodel/device.h"
#include "bizmodel/keypad.h"
#include "bizmodel/translations.h"
#include "modelcontrol/asyncmanager.h"
#include "modelcontrol/device.h"
#include "parallelcontrol/parallelmanager.h"
#include "tasksampling/samplingthread.h"

#include <limits>

namespace Orvane::ECProxy::Client::Internal {

using BizModel::FramelessMessageBoxMsgType;
using BizModel::Enum::File::FileType;
using BizModel::Enum::Preset::PresetOptMode;
using ProtoModel::File::s_KeypadInfo;

namespace Translate = BizModel::Translate;

namespace {

/// State of the device's keypad; empty when it has none.
s_KeypadInfo keypadInfoOf(const BizModel::Device& device)
{
    const auto keypad = keypadFile(device);
    return keypad ? keypad->keypadInfo() : s_KeypadInfo();
}

/// State of the keypad once the preset is loaded; the present one when that is not known.
s_KeypadInfo keypadInfoAfter(
    const ModelControl::Preset& presets, const PresetPtr& preset,
    const ModelControl::Preset::Screens& screens, const s_KeypadInfo& present)
{
    s_KeypadInfo after;
    if (presets.createKeypadInfo(preset, screens, after))
        return after;
    ecWarning(lcModel, "create keypadInfo failed");
    return present;
}

/// Hands the load to the sampling thread, which keeps the newest of those that wait.
bool sampleLoad(const TaskSampling::s_LoadPresetSampling& sampling)
{
    logConsumeTime("preset consume time:SamplingThread appendData start.");
    ecDebug(lcModel, "***************************************5.22");
    auto* const thread = TaskSampling::SamplingThread::instance();
    if (thread && thread->setSamplingType(TaskSampling::LoadPreset)
        && thread->appendData(std::make_shared<TaskSampling::s_LoadPresetSampling>(sampling)))
        return true;
    ecWarning(lcModel, "Load preset failed: sampling failed.");
    return false;
}

} // namespace

// ---- Saving ---------------------------------------------------------------------------------------------

PresetPtr OrvanePresetCommandPrivate::presetOf(const BizModel::Device& device, quint64 fileId)
{
    const auto presets = device.presets();
    for (const auto& weakPreset : presets) {
        auto preset = weakPreset.lock();
        if (preset && preset->presetDetail().id == fileId)
            return preset;
    }
    return nullptr;
}

bool OrvanePresetCommandPrivate::storePreset(const DevicePtr& device, quint16 fileId)
{
    QString error;
    if (const auto present = presetOf(*device, fileId)) {
        const auto presets = ModelControl::Preset::create(device);
        if (presets && presets->coverPreset(present, FileType::PresetPVW, error))
            return true;
        ecWarning(lcModel, "Failed to cover the PVW preset! errMsg :%s", qUtf8Printable(error));
        return false;
    }
    const auto files = ModelControl::Device::create(device);
    if (files && files->createPresetFile(FileType::PresetPVW, fileId, error))
        return true;
    ecWarning(lcModel, "Failed to create the PVW preset! %s", qUtf8Printable(error));
    return false;
}

bool OrvanePresetCommandPrivate::savePreset(const quint32& ecKey)
{
    ecDebug(lcKeys, "preset key [%u] pressed to create preset.", ecKey);
    const auto device = activedDevice();
    if (!device) {
        ecWarning(lcKeys, "Create preset failed: device is nullptr.");
        return false;
    }
    QString error;
    if (!device->editPresetValidityCheck(Translate::tr(Translate::TR_THE_FUNCTION_CREATEPRESET), error)) {
        ecWarning(lcKeys, "Create preset refused: %s", qUtf8Printable(error));
        showFramelessMessageBox(FramelessMessageBoxMsgType::Information, error);
        m_modes.end(PresetOptMode::Save);
        return false;
    }
    const int slot = m_presetKeys.findECButtonIndex(ecKey);
    if (slot < 0 || slot >= device->maxPresetCount()) {
        ecWarning(
            lcKeys, "Create preset refused: the device has %d presets, this key's would be %d.",
            int(device->maxPresetCount()), slot + 1);
        m_modes.end(PresetOptMode::Save);
        return false;
    }
    const auto fileId = quint16(slot + 1);
    if (!storePreset(device, fileId))
        return false;
    updateECCommandItems();
    if (const auto preset = presetOf(*device, fileId))
        device->setActivedPreset(preset, fileId);
    else
        ecWarning(lcModel, "Create preset: preset %u is gone before it could become the active one.", fileId);
    m_modes.end(PresetOptMode::Save);
    return true;
}

// ---- Loading --------------------------------------------------------------------------------------------

bool OrvanePresetCommandPrivate::loadPreset(const quint32& ecKey, bool)
{
    const auto* const parallel = ParallelControl::ParallelManager::instance();
    if (parallel && parallel->currentTaskCount() != 0) {
        ecWarning(lcKeys, "Load preset refused: a request such as a take is still running.");
        return false;
    }
    logConsumeTime("preset consume time:OrvanePresetCommand loadPreset start.");
    ecDebug(lcKeys, "preset key [%u] pressed to load preset.", ecKey);
    const auto device = activedDevice();
    if (!device) {
        ecWarning(lcKeys, "Load preset failed: device is nullptr.");
        return false;
    }
    const auto preset = findPresetByEckey(ecKey);
    if (!preset) {
        ecWarning(lcKeys, "Actived preset is null");
        return false;
    }
    if (preset->fileId() > std::numeric_limits<quint8>::max()) {
        ecWarning(lcKeys, "Load preset failed: file id %u is beyond what a load can name.", preset->fileId());
        return false; // cut to its low byte it would be another preset's
    }
    const auto presets = ModelControl::Preset::create(device);
    if (!presets) {
        ecWarning(lcKeys, "Load preset failed: the application offers no preset control.");
        return false;
    }
    QString error;
    if (!presets->checkPresetData(preset, error)) {
        ecWarning(lcKeys, "Load preset refused: %s", qUtf8Printable(error));
        showFramelessMessageBox(FramelessMessageBoxMsgType::Warning, error);
        return false;
    }
    ModelControl::Preset::Screens screens;
    if (!preset->presetSelectedScreens(screens, preset->fileType(), error))
        ecWarning(lcModel, "Load preset: its screens are not known. %s", qUtf8Printable(error));

    const s_KeypadInfo lastKeypadInfo = keypadInfoOf(*device);
    const s_KeypadInfo keypadInfo = keypadInfoAfter(*presets, preset, screens, lastKeypadInfo);
    m_modelUpdates.post([device = WeakDevice(device), preset = WeakPreset(preset), screens, keypadInfo] {
        updatePresetModel(device, preset, screens, keypadInfo);
    });
    sampleLoad({quint8(preset->fileId()), device, keypadInfo, lastKeypadInfo});
    m_modes.endSelect();
    logConsumeTime("preset consume time:OrvanePresetCommand loadPreset end");
    return true;
}

void OrvanePresetCommandPrivate::updatePresetModel(
    const WeakDevice& weakDevice, const WeakPreset& preset, const ModelControl::Preset::Screens& screens,
    const s_KeypadInfo& keypadInfo)
{
    const auto device = weakDevice.lock();
    if (!device) {
        ecWarning(lcModel, "Load preset failed: device is nullptr.");
        return;
    }
    if (preset.expired()) {
        ecWarning(lcModel, "Load preset failed: preset is nullptr.");
        return;
    }
    QString error;
    const auto presets = ModelControl::Preset::create(device);
    if (!presets || !presets->updatePresetModelData(preset, screens, error))
        ecWarning(lcModel, "Load preset: the model was not updated. %s", qUtf8Printable(error));
    device->addKeypadFile(std::make_shared<BizModel::Keypad>(keypadInfo));
}

// ---- Removing -------------------------------------------------------------------------------------------

bool OrvanePresetCommandPrivate::clearPreset(const quint32& ecKey)
{
    ecDebug(lcKeys, "preset key [%u] pressed to clear preset.", ecKey);
    const auto device = activedDevice();
    if (!device) {
        ecWarning(lcKeys, "Clear preset failed: device is nullptr.");
        return false;
    }
    const auto preset = findPresetByEckey(ecKey);
    if (!preset) {
        ecWarning(lcKeys, "clear preset is null");
        return false;
    }
    if (device->onlineFlag()) {
        showWaitingDialog(Translate::tr(Translate::TR_THE_PRESET_DELETE_WAIT));
        QString error;
        const auto files = ModelControl::Device::create(device);
        const bool removed = files && files->removeFile({preset}, error);
        hideWaitingDialog();
        if (!removed)
            ecWarning(lcModel, "Remove preset has failed! %s", qUtf8Printable(error));
    } else {
        ecWarning(lcKeys, "Remove preset refused: the device is offline.");
    }
    m_modes.setClearStatus(true);
    return true;
}

bool OrvanePresetCommandPrivate::clearAllPresets()
{
    const auto device = activedDevice();
    if (!device) {
        ecWarning(lcKeys, "Clear all presets failed: device is nullptr.");
        return false;
    }
    if (!device->onlineFlag()) {
        ecWarning(lcKeys, "Clear all presets refused: the device is offline.");
        return true;
    }
    showWaitingDialog(Translate::tr(Translate::TR_THE_PRESET_CLEAR_WAIT));
    // May run when the command is gone: uses nothing of it.
    const auto completion = [](bool ok, const QString& reason) {
        if (!ok)
            ecWarning(
                lcModel, "Remove preset file has failed! PresetPVW & PresetPVW file type. %s",
                qUtf8Printable(reason));
        hideWaitingDialog();
    };
    if (auto* requests = ModelControl::AsyncManager::instance())
        requests->startAsyncRequest(
            ModelControl::AsyncRemoveFile{device, {FileType::PresetPVW, FileType::PresetPGM}, completion});
    else
        completion(false, QStringLiteral("The application takes no requests."));
    return true;
}

} // namespace Orvane::ECProxy::Client::Internal
