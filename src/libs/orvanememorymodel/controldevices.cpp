#include "control_p.h"

namespace Orvane::MemoryModel {

using BizModel::DeviceList;

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
    if (std::exchange(m_list.data(change).activeDevice, wanted) != wanted)
        change.announce([](ModelSignals& list) { Q_EMIT list.signalActivedDeviceChanged(); });
    return ControlResult::done();
}

ControlResult Control::setOnline(const QString& device, bool online)
{
    return onDevice(device, [online](Change& change, const auto& present) {
        present->data(change).online = online;
        change.markChanged();
        return ControlResult::done();
    });
}

ControlResult Control::setUpgrading(const QString& device, bool upgrading)
{
    return onDevice(device, [upgrading](Change& change, const auto& present) {
        present->data(change).upgrading = upgrading;
        change.markChanged();
        return ControlResult::done();
    });
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
        if (std::exchange(present->data(change).groupId, wanted) != wanted)
            change.announce([](ModelSignals& list) { Q_EMIT list.signalDeviceGroupInfoChanged(); });
        return ControlResult::done();
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
        change.announce([weak = std::weak_ptr<MemoryDevice>(present)](ModelSignals& list) {
            Q_EMIT list.signalDeviceIPChanged(weak);
        });
        return ControlResult::done();
    });
}

ControlResult Control::removeDevice(const QString& device)
{
    return onDevice(device, [this](Change& change, const auto& present) {
        MemoryDeviceList::Data& state = m_list.data(change);
        m_list.retire(change, present);
        if (state.activeDevice == present) {
            state.activeDevice = nullptr;
            change.announce([](ModelSignals& list) { Q_EMIT list.signalActivedDeviceChanged(); });
        }
        return ControlResult::done();
    });
}

ControlResult Control::setMultiScreens(const QString& device, bool several)
{
    return onDevice(device, [several](Change& change, const auto& present) {
        present->data(change).multiScreens = several;
        change.markChanged();
        bool oneSelected = false;
        bool changed = false;
        for (const auto& screen : std::as_const(present->data(change).screens)) {
            bool& selected = screen->data(change).selected;
            if (selected && oneSelected && !several)
                changed = !(selected = false);
            oneSelected |= selected;
        }
        if (changed)
            present->announceSelectedScreens(change);
        return ControlResult::done();
    });
}

ControlResult Control::setSwap(const QString& device, bool swap)
{
    return onDevice(device, [swap](Change& change, const auto& present) {
        return setAndAnnounce(
            change, present->data(change).swap, swap, present, &DeviceList::signalSwapStateChanged);
    });
}

ControlResult Control::setLoadToPGM(const QString& device, bool loadToPGM)
{
    return onDevice(device, [loadToPGM](Change& change, const auto& present) {
        return setAndAnnounce(
            change, present->data(change).loadToPGM, loadToPGM, present,
            &DeviceList::signalLoadToPGMStateChanged);
    });
}

ControlResult Control::setConsolePlugin(const QString& device, bool enabled)
{
    return onDevice(device, [enabled](Change& change, const auto& present) {
        present->data(change).config.consolePlugin = enabled;
        change.markChanged();
        return ControlResult::done();
    });
}

ControlResult Control::setLoadToPGMEnabled(const QString& device, bool enabled)
{
    return onDevice(device, [enabled](Change& change, const auto& present) {
        present->data(change).config.loadToPGMEnabled = enabled;
        change.markChanged();
        return ControlResult::done();
    });
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
