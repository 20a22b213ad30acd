#include "memorypreset.h"

#include "bizmodel/device.h"
#include "bizmodel/screen.h"
#include "operationtext.h"

#include <utility>

namespace Orvane::MemoryModel {

MemoryPreset::MemoryPreset(
    std::shared_ptr<ModelHub> hub, std::weak_ptr<BizModel::Device> device, const PresetRecord& record)
    : m_pHub(std::move(hub))
    , m_pDevice(std::move(device))
    , m_type(record.type)
    , m_nId(record.id)
    , m_record(record)
{
}

bool MemoryPreset::presetSelectedScreens(
    QList<std::weak_ptr<BizModel::Screen>>& screens, FileType type, QString& error) const
{
    const std::shared_ptr<BizModel::Device> owner = m_pDevice.lock();
    const QString arguments =
        deviceText(owner) + QStringLiteral(" preset=%1 type=%2").arg(m_nId).arg(int(type));
    if (const auto failure = m_pHub->operations.perform(Operation::PresetSelectedScreens, arguments)) {
        error = *failure;
        return false;
    }
    if (!owner) {
        error = QStringLiteral("The preset's device is gone.");
        return false;
    }
    // The device takes the lock for itself.
    const QList<PresetScreenRecord> stored = data(Guard(*m_pHub)).screens;
    const auto present = owner->screens(ScreenType::AllScreenType);
    screens.clear();
    for (const PresetScreenRecord& wanted : stored) {
        for (const std::weak_ptr<BizModel::Screen>& each : present) {
            const std::shared_ptr<BizModel::Screen> screen = each.lock();
            if (screen && ScreenKey{screen->screenType(), screen->screenId()} == wanted.key)
                screens += each;
        }
    }
    if (screens.isEmpty())
        error = QStringLiteral("None of the preset's screens is there.");
    return !screens.isEmpty();
}

} // namespace Orvane::MemoryModel
