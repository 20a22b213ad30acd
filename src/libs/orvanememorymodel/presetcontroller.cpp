#include "presetcontroller.h"

#include "operationtext.h"
#include "presets.h"

#include <utility>

namespace Orvane::MemoryModel {

PresetController::PresetController(
    std::shared_ptr<ModelHub> hub, MemoryDeviceList& list, Processor& processor,
    std::weak_ptr<BizModel::Device> device)
    : m_pHub(std::move(hub))
    , m_list(list)
    , m_processor(processor)
    , m_pDevice(std::move(device))
{
}

bool PresetController::coverPreset(
    const std::weak_ptr<BizModel::Preset>& preset, FileType type, QString& error)
{
    error.clear();
    const auto failure = start(Operation::CoverPreset, preset, QStringLiteral(" type=%1").arg(int(type)));
    if (failure) {
        error = *failure;
        return false;
    }
    const std::shared_ptr<BizModel::Device> device = m_pDevice.lock();
    const std::shared_ptr<BizModel::Preset> present = preset.lock();
    if (device && present && !m_processor.storePreset(device->ipMacSn(), type, present->fileId(), error))
        return false;
    Change change(*m_pHub);
    const Found found = find(change, preset, error);
    return found.preset && MemoryModel::coverPreset(change, found.owner, found.preset, type, error);
}

bool PresetController::checkPresetData(const std::weak_ptr<BizModel::Preset>& preset, QString& error) const
{
    error.clear();
    if (const auto failure = start(Operation::CheckPresetData, preset)) {
        error = *failure;
        return false;
    }
    Change change(*m_pHub);
    const Found found = find(change, preset, error);
    if (!found.preset)
        return false;
    for (const std::shared_ptr<MemoryDevice>& member : found.group)
        member->beginLoad(change, found.preset->fileId());
    return !loadableScreens(change, *found.owner, *found.preset, found.owner->data(change).screens, error)
                .isEmpty();
}

bool PresetController::createKeypadInfo(
    const std::weak_ptr<BizModel::Preset>& preset, const Screens& screens,
    ProtoModel::File::s_KeypadInfo& keypadInfo) const
{
    if (start(Operation::CreateKeypadInfo, preset, QLatin1Char(' ') + screensText(screens)))
        return false;
    QList<quint32> ids;
    for (const std::weak_ptr<BizModel::Screen>& screen : screens) {
        if (const std::shared_ptr<BizModel::Screen> present = screen.lock())
            ids += present->screenId();
    }
    const Guard guard(*m_pHub);
    QString error;
    const Found found = find(guard, preset, error);
    if (found.preset)
        keypadInfo = keypadAfterLoad(guard, found.group, *found.preset, ids);
    return found.preset != nullptr;
}

bool PresetController::updatePresetModelData(
    const std::weak_ptr<BizModel::Preset>& preset, const Screens& screens, QString& error)
{
    error.clear();
    const auto failure =
        start(Operation::UpdatePresetModelData, preset, QLatin1Char(' ') + screensText(screens));
    Change change(*m_pHub);
    const Found found = find(change, preset, error);
    if (!found.preset)
        return false;
    MemoryDevice::Screens wanted;
    for (const std::weak_ptr<BizModel::Screen>& screen : screens) {
        if (const std::shared_ptr<MemoryScreen> present = found.owner->own(change, screen))
            wanted += present;
    }
    if (failure)
        error = *failure;
    const bool ok = !failure && takeOver(change, found.owner, found.preset, wanted, error);
    const quint16 fileId = found.preset->fileId();
    for (const std::shared_ptr<MemoryDevice>& member : found.group) {
        const auto other = findPreset(change, {member}, fileId);
        QString passedOver;
        const bool refused = !ok
            || (member != found.owner && other
                && !takeOver(change, member, other, member->data(change).screens, passedOver));
        if (refused)
            member->refusedByModel(change, fileId);
        else
            member->loadedByModel(change, fileId);
    }
    return ok;
}

/// Puts the preset's scenes on those of the screens that it stores; false, with the reason in @p error, when
/// there is none or one is busy.
bool PresetController::takeOver(
    Change& change, const std::shared_ptr<MemoryDevice>& device, const std::shared_ptr<MemoryPreset>& preset,
    const MemoryDevice::Screens& wanted, QString& error)
{
    const auto screens = loadableScreens(change, *device, *preset, wanted, error);
    if (screens.isEmpty())
        return false;
    loadPreset(change, *device, *preset, screens);
    return true;
}

/// Writes the operation into the journal; the error text when it has to fail.
std::optional<QString> PresetController::start(
    Operation operation, const std::weak_ptr<BizModel::Preset>& preset, const QString& arguments) const
{
    const std::shared_ptr<BizModel::Preset> present = preset.lock();
    return m_pHub->operations.perform(
        operation,
        QStringLiteral("%1 preset=%2%3")
            .arg(deviceText(m_pDevice), present ? QString::number(present->fileId()) : QStringLiteral("gone"))
            .arg(arguments));
}

PresetController::Found PresetController::find(
    const Guard& guard, const std::weak_ptr<BizModel::Preset>& preset, QString& error) const
{
    Found found;
    if (const std::shared_ptr<MemoryDevice> device = m_list.own(guard, m_pDevice))
        found.group = m_list.group(guard, device);
    for (const std::shared_ptr<MemoryDevice>& member : std::as_const(found.group)) {
        if (const auto own = member->own(guard, preset)) {
            found.owner = member;
            found.preset = own;
            return found;
        }
    }
    error = QStringLiteral("The preset is gone.");
    return found;
}

} // namespace Orvane::MemoryModel
