#include "devicecontroller.h"

#include "operationtext.h"
#include "presets.h"

#include <QStringList>

#include <utility>

namespace Orvane::MemoryModel {

DeviceController::DeviceController(const ControllerParts& parts)
    : ControllerParts(parts)
    , ModelControl::Device(m_pDevice)
{
}

void DeviceController::setActivedScreen(const std::weak_ptr<BizModel::Screen>& screen)
{
    if (!start(Operation::SetActivedScreen, screenText(screen)))
        return;
    Change change(*m_pHub);
    if (const auto own = this->screen(change, screen))
        device(change)->setActiveScreen(change, own);
}

DeviceController::ScreenList DeviceController::getTakeScreens(
    int screenTypeMask, const ModelControl::s_SwitchEffectBody&, bool onlySelected) const
{
    const Guard guard(*m_pHub);
    const std::shared_ptr<MemoryDevice> owner = device(guard);
    const auto screens =
        owner ? owner->takeScreens(guard, screenTypeMask, onlySelected) : MemoryDevice::Screens();
    return {screens.begin(), screens.end()};
}

bool DeviceController::createPresetFile(FileType type, quint16 fileId, QString& error)
{
    const QString arguments = QStringLiteral("type=%1 preset=%2").arg(int(type)).arg(fileId);
    if (!start(Operation::CreatePresetFile, arguments, &error))
        return false;
    const std::shared_ptr<BizModel::Device> known = m_pDevice.lock();
    if (known && !m_processor.storePreset(known->ipMacSn(), type, fileId, error))
        return false;
    Change change(*m_pHub);
    if (const std::shared_ptr<MemoryDevice> owner = device(change))
        return createPreset(change, m_pHub, *owner, type, fileId, error);
    error = QStringLiteral("The device is gone.");
    return false;
}

bool DeviceController::removeFile(const QList<std::weak_ptr<BizModel::File>>& files, QString& error)
{
    QStringList ids;
    for (const std::weak_ptr<BizModel::File>& file : files) {
        const std::shared_ptr<BizModel::File> present = file.lock();
        ids += present ? QStringLiteral("%1:%2").arg(int(present->fileType())).arg(present->fileId())
                       : QStringLiteral("gone");
    }
    const QString arguments = QStringLiteral("files=[%1]").arg(ids.join(QLatin1Char(',')));
    if (!start(Operation::RemoveFile, arguments, &error))
        return false;
    QList<std::pair<QString, std::shared_ptr<MemoryPreset>>> planned;
    {
        const Guard guard(*m_pHub);
        const MemoryDeviceList::Devices members = group(guard);
        if (members.isEmpty()) {
            error = QStringLiteral("The device is gone.");
            return false;
        }
        // A key shows the presets of the whole group, so one of another member may be meant.
        for (const std::shared_ptr<MemoryDevice>& member : members) {
            for (const std::weak_ptr<BizModel::File>& file : files) {
                if (const auto own =
                        member->own(guard, std::weak_ptr<BizModel::Preset>(ownObject<MemoryPreset>(file))))
                    planned += {std::as_const(*member).data(guard).ipMacSn, own};
            }
        }
    }
    error = QStringLiteral("A file is gone.");
    bool ok = planned.size() == files.size();
    for (const auto& [owner, preset] : std::as_const(planned)) {
        QString reason;
        if (!m_processor.removePreset(owner, preset->fileType(), preset->fileId(), reason)) {
            error = reason;
            ok = false;
            continue;
        }
        Change change(*m_pHub);
        ok &= removePreset(change, group(change), preset);
    }
    if (ok)
        error.clear();
    return ok;
}

} // namespace Orvane::MemoryModel
