#include "control_p.h"

namespace Orvane::MemoryModel {

Control::Control(std::shared_ptr<ModelHub> hub, MemoryDeviceList& list)
    : m_pHub(std::move(hub))
    , m_list(list)
{
}

ControlResult Control::activateDevice(const QString& device)
{
    Change change(*m_pHub);
    const std::shared_ptr<MemoryDevice> wanted = m_list.device(change, device);
    if (!wanted && !device.isEmpty())
        return ControlResult::refused(QStringLiteral("there is no device %1").arg(device));
    change.set(m_list.data(change).activeDevice, wanted, &DeviceList::signalActivedDeviceChanged);
    return ControlResult::done();
}

ControlResult Control::setOnline(const QString& device, bool online)
{
    return setOnDevice(device, &MemoryDevice::Data::online, online);
}

ControlResult Control::setUpgrading(const QString& device, bool upgrading)
{
    return setOnDevice(device, &MemoryDevice::Data::upgrading, upgrading);
}

void Control::setCompatibleUpgrading(bool upgrading)
{
    Change change(*m_pHub);
    m_list.data(change).compatibleUpgrading = upgrading;
    change.markChanged();
}

ControlResult Control::setGroup(const QString& device, const QString& groupId)
{
    const QString wanted = groupId.isEmpty() ? BizModel::Device::defaultDeviceGroupId : groupId;
    return onDevice(device, [&wanted](Change& change, const auto& present) {
        change.set(present->data(change).groupId, wanted, &DeviceList::signalDeviceGroupInfoChanged);
    });
}

ControlResult Control::changeAddress(const QString& device, const QString& ipMacSn)
{
    return onDevice(device, [&](Change& change, const auto& present) {
        MemoryDevice::Data& state = present->data(change);
        if (ipMacSn.isEmpty())
            return ControlResult::refused(QStringLiteral("an identity must not be empty"));
        if (m_list.device(change, ipMacSn))
            return ControlResult::refused(QStringLiteral("there is a device %1 already").arg(ipMacSn));
        state.preIPMacSn = std::exchange(state.ipMacSn, ipMacSn);
        change.announce(&DeviceList::signalDeviceIPChanged, present);
        return ControlResult::done();
    });
}

ControlResult Control::removeDevice(const QString& device)
{
    return onDevice(device, [this](Change& change, const auto& present) {
        MemoryDeviceList::Data& state = m_list.data(change);
        m_list.retire(change, present);
        if (state.activeDevice == present)
            change.set(state.activeDevice, nullptr, &DeviceList::signalActivedDeviceChanged);
    });
}

ControlResult Control::setMultiScreens(const QString& device, bool several)
{
    return onDevice(device, [several](Change& change, const auto& present) {
        present->data(change).multiScreens = several;
        change.markChanged();
        bool oneSelected = false;
        present->selectScreens(change, [&](const auto&, bool isSelected) {
            return isSelected && (!std::exchange(oneSelected, true) || several);
        });
    });
}

ControlResult Control::setSwap(const QString& device, bool swap)
{
    return setOnDevice(device, &MemoryDevice::Data::swap, swap, &DeviceList::signalSwapStateChanged);
}

ControlResult Control::setLoadToPGM(const QString& device, bool loadToPGM)
{
    return setOnDevice(
        device, &MemoryDevice::Data::loadToPGM, loadToPGM, &DeviceList::signalLoadToPGMStateChanged);
}

ControlResult Control::setConsolePlugin(const QString& device, bool enabled)
{
    return setOnDevice(device, &MemoryDevice::Data::consolePlugin, enabled);
}

ControlResult Control::setLoadToPGMEnabled(const QString& device, bool enabled)
{
    return setOnDevice(device, &MemoryDevice::Data::loadToPGMEnabled, enabled);
}

ControlResult Control::setOutputOnline(const QString& device, quint32 outputId, bool online)
{
    return onDevice(device, [&](Change& change, const auto& present) {
        const std::shared_ptr<MemoryOutput> output = present->output(outputId);
        if (!output)
            return ControlResult::refused(QStringLiteral("the device has no output %1").arg(outputId));
        output->online(change) = online;
        change.markChanged();
        return ControlResult::done();
    });
}

void Control::answerMessageBox(QMessageBox::StandardButton button)
{
    Q_EMIT m_list.signalFramelessMessageBoxClosed(button);
}

void Control::showPresetPage(int page)
{
    Q_EMIT m_list.signalPageChanged(page);
}

} // namespace Orvane::MemoryModel
