#include "orvanepresetcommand.h"

#include "log_p.h"
#include "modelaccess_p.h"
#include "orvanepresetcommand_p.h"
#include "presetgroup_p.h"

#include "bizmodel/device.h"
#include "bizmodel/devicelist.h"
#include "ec/eckeyboardconfig.h"

#include <algorithm>
#include <vector>

namespace Orvane::ECProxy::Client {

namespace Internal {

// ---- Items ----------------------------------------------------------------------------------------------

OrvanePresetCommandPrivate::KeyPresets OrvanePresetCommandPrivate::readPresets(const BizModel::Device& device)
{
    struct Found {
        PresetPtr preset;
        DevicePtr device;
        quint16 fileId = 0;
    };
    std::vector<Found> found;
    const BizModel::DeviceList* devices = BizModel::DeviceList::instance();
    const auto members = devices ? devices->groupDevices(device.groupId(), true, false) : QList<WeakDevice>();
    for (const auto& weakMember : members) {
        const auto member = weakMember.lock();
        if (!member)
            continue;
        const auto presets = member->presets();
        for (const auto& weakPreset : presets) {
            if (const auto preset = weakPreset.lock())
                found.push_back({preset, member, preset->fileId()});
        }
    }
    std::stable_sort(found.begin(), found.end(), [](const Found& left, const Found& right) {
        return left.fileId < right.fileId;
    });

    const auto actived = device.activedPreset().lock();
    KeyPresets keys;
    for (const Found& each : found) {
        if (each.fileId == 0)
            continue; // no slot
        KeyPreset& key = keys[each.fileId - 1];
        const ECObjectId id(each.fileId, quint32(each.preset->fileType()));
        if (!key.ids.contains(id))
            key.ids.append(id);
        if (key.namedBy != each.device.get())
            key.names.append(each.preset->name());
        key.namedBy = each.device.get();
        key.isActived = key.isActived || each.preset == actived;
    }
    return keys;
}

void OrvanePresetCommandPrivate::bindPresets(const QString& ip, const KeyPresets& presets)
{
    const ECCommandItemList items = m_keys.items(ip);
    for (const ECCommandItemPtr& item : items) {
        const auto found = presets.find(m_keys.placeOf(*item).buttonIndex);
        if (found == presets.cend()) {
            item->resetECCommandItem();
            continue;
        }
        const KeyPreset& preset = found->second;
        m_keys.bind(
            item, preset.ids, preset.isActived ? ECLEDColor::Green : ECLEDColor::Yellow,
            preset.names.join(QLatin1Char('/')));
    }
    QMap<quint32, quint32> fileIds;
    for (const auto& [slot, preset] : presets)
        fileIds[quint32(slot)] = quint32(preset.ids.first().first);
    const std::lock_guard<std::mutex> lock(m_keyMapMutex);
    presetKeyMap.swap(fileIds);
}

void OrvanePresetCommandPrivate::updateECCommandItems()
{
    const int pageSize = m_presetKeys.ecCommandConfig() ? m_presetKeys.pageSize() : 0;
    if (pageSize <= 0) {
        ecWarning(lcPaint, "ECCommandItem config is not exist.");
        return;
    }
    const auto device = activedDevice();
    if (!device) {
        ecCritical(lcPaint, "No actived device");
        return;
    }
    const QString ip = device->ipMacSn();
    // A device that has just become the active one may not have its keys yet.
    KeyGroup::initDevice(ip);
    m_keys.updateItems(
        [&] { return readPresets(*device); }, [&](const KeyPresets& presets) { bindPresets(ip, presets); });
}

PresetPtr OrvanePresetCommandPrivate::findPresetByEckey(const quint32& ecKey) const
{
    const auto device = activedDevice();
    const BizModel::DeviceList* devices = BizModel::DeviceList::instance();
    if (!device || !devices)
        return nullptr;
    const int slot = m_presetKeys.findECButtonIndex(ecKey);
    const ECObjectIdList bound = m_keys.objectsOn(device->ipMacSn(), slot);
    if (bound.isEmpty())
        return nullptr;
    // The order of the group's presets: the device's own, then those of the others, mostly not needed.
    if (auto own = presetOf(*device, bound.first().first))
        return own;
    const auto members = devices->groupDevices(device, true, false);
    for (const auto& weakMember : members) {
        const auto member = weakMember.lock();
        if (auto preset = member ? presetOf(*member, bound.first().first) : nullptr)
            return preset;
    }
    return nullptr;
}

void OrvanePresetCommandPrivate::unbindRemovedPreset(
    const BizModel::Device& device, const BizModel::Preset& preset)
{
    const ECObjectId id(preset.fileId(), quint32(preset.fileType()));
    m_keys.writeItems([&, ip = device.ipMacSn()] { m_keys.unbind(ip, id); });
}

bool OrvanePresetCommandPrivate::isOfActivedGroup(const WeakDevice& weakDevice)
{
    const auto device = weakDevice.lock();
    const auto actived = activedDevice();
    const BizModel::DeviceList* devices = BizModel::DeviceList::instance();
    if (!device || !actived || !devices)
        return false;
    const auto members = devices->groupDevices(actived->groupId(), true, false);
    return std::any_of(
        members.cbegin(), members.cend(), [&](const auto& member) { return member.lock() == device; });
}

QMap<quint32, quint32> OrvanePresetCommandPrivate::presetKeyMapCopy() const
{
    const std::lock_guard<std::mutex> lock(m_keyMapMutex);
    return presetKeyMap;
}

} // namespace Internal

using BizModel::Enum::Preset::PresetOptMode;
using Internal::OrvanePresetCommandPrivate;

OrvanePresetCommand::OrvanePresetCommand(
    Command& presetKeys, Internal::PresetModes& modes, Internal::KeyGroup& keys, QObject* parent)
    : IPresetCommandEx(parent)
    , d(std::make_unique<OrvanePresetCommandPrivate>(this, presetKeys, modes, keys))
{
}

OrvanePresetCommand::~OrvanePresetCommand()
{
    stopPainting();
}

// ---- The group of keys ----------------------------------------------------------------------------------

QString OrvanePresetCommand::name() const
{
    return Constants::PRESETCOMMANDNAME;
}

int OrvanePresetCommand::maxPage()
{
    constexpr int pagesWithoutDevice = 4;
    const int size = pageSize();
    return size > 0 && Internal::activedDevice() ? Internal::pageCount(Internal::MaxKeyPresets, size)
                                                 : pagesWithoutDevice;
}

int OrvanePresetCommand::pageSize() const
{
    return d->m_presetKeys.pageSize();
}

QList<std::shared_ptr<ECCommandItem>> OrvanePresetCommand::commandItems() const
{
    const auto device = Internal::activedDevice();
    const QString ip = device ? device->ipMacSn() : QString();
    return d->m_keys.readItems([&] {
        QList<std::shared_ptr<ECCommandItem>> copies;
        const auto items = d->m_keys.items(ip);
        copies.reserve(items.size());
        for (const auto& item : items)
            copies.append(std::make_shared<ECCommandItem>(*item));
        return copies;
    });
}

bool OrvanePresetCommand::updatePageOled(const quint32& oledECKey, const quint32& pageIndex)
{
    const bool isShown = Command::updatePageOled(oledECKey, pageIndex);
    updateECCommandItems();
    d->m_presetKeys.updateCommandKeypad(Enum::UpdateConsoleType::All);
    return isShown;
}

void OrvanePresetCommand::updateKeyboard()
{
    if (const auto oled = findPageOled(quint16(PresetCallbackType::ePageUp)))
        updatePageOled(oled->ECKey, quint32(page()));
}

bool OrvanePresetCommand::isAllowedKeyReleased(const quint16& ecKey)
{
    return d->m_presetKeys.isAllowedKeyReleased(ecKey);
}

void OrvanePresetCommand::updateECCommandItems()
{
    d->updateECCommandItems();
}

QMap<quint32, quint32> OrvanePresetCommand::presetKeyMap() const
{
    return d->presetKeyMapCopy();
}

// ---- Keys -----------------------------------------------------------------------------------------------

bool OrvanePresetCommand::selectPresetPressed(const quint32& ecKey)
{
    return selectPresetPressed(ecKey, false);
}

bool OrvanePresetCommand::selectPresetPressed(const quint32& ecKey, bool bound)
{
    ecDebug(lcKeys, "press preset key:%u", ecKey);
    const PresetOptMode mode = d->m_modes.mode();
    switch (mode) {
    case PresetOptMode::Clear:
        d->clearPreset(ecKey);
        break;
    case PresetOptMode::Save:
        d->savePreset(ecKey);
        break;
    case PresetOptMode::Select:
        d->loadPreset(ecKey, bound);
        break;
    case PresetOptMode::Noting:
    case PresetOptMode::ClearAll:
        ecWarning(lcKeys, "preset key [%u] refused: there is nothing to do in mode %d.", ecKey, int(mode));
        break;
    }
    return true;
}

void OrvanePresetCommand::updatePageIndex()
{
    updateCurrentPageIndex(d->m_presetKeys.page());
}

bool OrvanePresetCommand::clearPresetsPressed()
{
    ecDebug(lcKeys, "Clear all presets pressed.");
    d->clearAllPresets();
    return true;
}

// ---- The model's notifications --------------------------------------------------------------------------

void OrvanePresetCommand::slotDeviceRemoved(DevicePtr device)
{
    if (device)
        d->m_keys.forgetDevice(device->ipMacSn());
}

void OrvanePresetCommand::slotDevicePresetAdded(WeakDevice device, WeakPreset)
{
    if (OrvanePresetCommandPrivate::isOfActivedGroup(device))
        updateECCommandItems();
}

void OrvanePresetCommand::slotDevicePresetRemoved(WeakDevice weakDevice, PresetPtr preset)
{
    const auto device = weakDevice.lock();
    if (device && preset)
        d->unbindRemovedPreset(*device, *preset);
    // With the light the arming ends: a dark key never removes.
    d->m_modes.end(PresetOptMode::Clear);
    updateECCommandItems();
}

void OrvanePresetCommand::slotDeviceDevicePresetCleared(WeakDevice)
{
    updateECCommandItems();
    d->m_modes.offFunctionkeyColor(PresetCallbackType::eClearPresetsCB);
}

void OrvanePresetCommand::slotPresetNameChanged(WeakDevice, WeakFile)
{
    updateECCommandItems();
}

void OrvanePresetCommand::slotDevicePresetSelectChanged(WeakDevice)
{
    updateECCommandItems();
}

void OrvanePresetCommand::slotDevicePresetCovered(WeakDevice, WeakPreset)
{
    updateECCommandItems();
}

} // namespace Orvane::ECProxy::Client
