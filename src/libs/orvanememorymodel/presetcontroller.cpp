#include "presetcontroller.h"

#include "operationtext.h"
#include "presets.h"

#include <utility>

namespace Orvane::MemoryModel {

PresetController::PresetController(const ControllerParts& parts)
    : ControllerParts(parts)
{
}

bool PresetController::coverPreset(
    const std::weak_ptr<BizModel::Preset>& preset, FileType type, QString& error)
{
    if (!start(Operation::CoverPreset, preset, QStringLiteral(" type=%1").arg(int(type)), error))
        return false;
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
    if (!start(Operation::CheckPresetData, preset, {}, error))
        return false;
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
    QString error;
    if (!start(Operation::CreateKeypadInfo, preset, QLatin1Char(' ') + screensText(screens), error))
        return false;
    QList<quint32> ids;
    for (const std::weak_ptr<BizModel::Screen>& screen : screens) {
        if (const std::shared_ptr<BizModel::Screen> present = screen.lock())
            ids += present->screenId();
    }
    const Guard guard(*m_pHub);
    const Found found = find(guard, preset, error);
    if (found.preset)
        keypadInfo = keypadAfterLoad(guard, found.group, *found.preset, ids);
    return found.preset != nullptr;
}

bool PresetController::updatePresetModelData(
    const std::weak_ptr<BizModel::Preset>& preset, const Screens& screens, QString& error)
{
    const bool isAccepted =
        start(Operation::UpdatePresetModelData, preset, QLatin1Char(' ') + screensText(screens), error);
    Change change(*m_pHub);
    const Found found = find(change, preset, error);
    if (!found.preset)
        return false;
    MemoryDevice::Screens wanted;
    for (const std::weak_ptr<BizModel::Screen>& screen : screens) {
        if (const std::shared_ptr<MemoryScreen> present = found.owner->own(change, screen))
            wanted += present;
    }
    const bool ok = isAccepted && takeOver(change, found.owner, found.preset, wanted, error);
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

bool PresetController::start(
    Operation operation, const std::weak_ptr<BizModel::Preset>& preset, const QString& arguments,
    QString& error) const
{
    const std::shared_ptr<BizModel::Preset> present = preset.lock();
    const QString id = present ? QString::number(present->fileId()) : QStringLiteral("gone");
    return ControllerParts::start(operation, QStringLiteral("preset=") + id + arguments, &error);
}

PresetController::Found PresetController::find(
    const Guard& guard, const std::weak_ptr<BizModel::Preset>& preset, QString& error) const
{
    Found found{group(guard), nullptr, nullptr};
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
