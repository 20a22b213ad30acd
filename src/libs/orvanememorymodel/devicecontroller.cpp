#include "devicecontroller.h"

#include "operationtext.h"
#include "presets.h"

#include <QStringList>

#include <algorithm>
#include <utility>

namespace Orvane::MemoryModel {

DeviceController::DeviceController(
    std::shared_ptr<ModelHub> hub, MemoryDeviceList& list, Processor& processor,
    std::weak_ptr<BizModel::Device> device)
    : ModelControl::Device(device)
    , m_pHub(std::move(hub))
    , m_list(list)
    , m_processor(processor)
    , m_pDevice(std::move(device))
{
}

void DeviceController::setActivedScreen(const std::weak_ptr<BizModel::Screen>& screen)
{
    const QString arguments = deviceText(m_pDevice) + QLatin1Char(' ') + screenText(screen);
    if (m_pHub->operations.perform(Operation::SetActivedScreen, arguments))
        return;
    Change change(*m_pHub);
    const std::shared_ptr<MemoryDevice> device = m_list.own(change, m_pDevice);
    const auto own = device ? device->own(change, screen) : nullptr;
    if (own)
        device->setActiveScreen(change, own);
}

QList<std::weak_ptr<BizModel::Screen>> DeviceController::getTakeScreens(
    int screenTypeMask, const ModelControl::s_SwitchEffectBody&, bool onlySelected) const
{
    const Guard guard(*m_pHub);
    QList<std::weak_ptr<BizModel::Screen>> list;
    const std::shared_ptr<MemoryDevice> device = m_list.own(guard, m_pDevice);
    if (!device)
        return list;
    const auto screens = device->takeScreens(guard, screenTypeMask, onlySelected);
    for (const std::shared_ptr<MemoryScreen>& screen : screens)
        list += screen;
    return list;
}

bool DeviceController::createPresetFile(FileType type, quint16 fileId, QString& error)
{
    error.clear();
    const QString arguments =
        deviceText(m_pDevice) + QStringLiteral(" type=%1 preset=%2").arg(int(type)).arg(fileId);
    if (const auto failure = m_pHub->operations.perform(Operation::CreatePresetFile, arguments)) {
        error = *failure;
        return false;
    }
    const std::shared_ptr<BizModel::Device> known = m_pDevice.lock();
    if (known && !m_processor.storePreset(known->ipMacSn(), type, fileId, error))
        return false;
    Change change(*m_pHub);
    const std::shared_ptr<MemoryDevice> device = m_list.own(change, m_pDevice);
    if (!device) {
        error = QStringLiteral("The device is gone.");
        return false;
    }
    return createPreset(change, m_pHub, *device, type, fileId, error);
}

bool DeviceController::removeFile(const QList<std::weak_ptr<BizModel::File>>& files, QString& error)
{
    error.clear();
    QStringList ids;
    for (const std::weak_ptr<BizModel::File>& file : files) {
        const std::shared_ptr<BizModel::File> present = file.lock();
        ids += present ? QStringLiteral("%1:%2").arg(int(present->fileType())).arg(present->fileId())
                       : QStringLiteral("gone");
    }
    const QString arguments =
        deviceText(m_pDevice) + QStringLiteral(" files=[%1]").arg(ids.join(QLatin1Char(',')));
    if (const auto failure = m_pHub->operations.perform(Operation::RemoveFile, arguments)) {
        error = *failure;
        return false;
    }
    QList<std::pair<QString, std::shared_ptr<MemoryPreset>>> planned;
    {
        const Guard guard(*m_pHub);
        const std::shared_ptr<MemoryDevice> device = m_list.own(guard, m_pDevice);
        if (!device) {
            error = QStringLiteral("The device is gone.");
            return false;
        }
        const MemoryDeviceList::Devices group = m_list.group(guard, device);
        // A key shows the presets of the whole group, so one of another member may be meant.
        for (const std::shared_ptr<MemoryDevice>& member : group) {
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
        const std::shared_ptr<MemoryDevice> device = m_list.own(change, m_pDevice);
        ok &= device && removePreset(change, m_list.group(change, device), preset);
    }
    if (ok)
        error.clear();
    return ok;
}

} // namespace Orvane::MemoryModel
