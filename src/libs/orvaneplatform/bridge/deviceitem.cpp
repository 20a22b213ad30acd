#include "bridge/deviceitem.h"

#include "bizmodel/connector.h"
#include "bridge/announce_p.h"

#include <algorithm>

namespace Orvane::Bridge {

using BizModel::DeviceList;
using Internal::announce;

class DeviceItem::SingleLink final : public BizModel::Connector {
public:
    BizModel::CapacityMode capacity() const override { return BizModel::CapacityMode::_SL; }
};

DeviceItem::DeviceItem(QString ipMacSn)
    : m_strIpMacSn(std::move(ipMacSn))
    , m_pConnector(std::make_shared<SingleLink>())
{
}

DeviceItem::~DeviceItem() = default;

std::weak_ptr<BizModel::Screen> DeviceItem::activedScreen() const
{
    const std::lock_guard lock(m_mutex);
    return m_pActiveScreen;
}

QList<std::weak_ptr<BizModel::Screen>> DeviceItem::screens(int screenTypeMask) const
{
    QList<std::weak_ptr<BizModel::Screen>> found;
    const ScreenList all = screenList();
    for (const std::shared_ptr<ScreenItem>& screen : all) {
        if (screen->screenType() & screenTypeMask)
            found += screen;
    }
    return found;
}

QList<std::weak_ptr<BizModel::Input>> DeviceItem::validInputs() const
{
    const std::lock_guard lock(m_mutex);
    return QList<std::weak_ptr<BizModel::Input>>(m_inputs.begin(), m_inputs.end());
}

std::weak_ptr<BizModel::Connector> DeviceItem::getConnector(const BizModel::s_InterfaceFullId&) const
{
    return m_pConnector;
}

QList<std::weak_ptr<BizModel::Preset>> DeviceItem::presets() const
{
    const std::lock_guard lock(m_mutex);
    return QList<std::weak_ptr<BizModel::Preset>>(m_presets.begin(), m_presets.end());
}

std::weak_ptr<BizModel::Preset> DeviceItem::activedPreset() const
{
    const std::lock_guard lock(m_mutex);
    return m_pActivePreset;
}

void DeviceItem::setActivedPreset(const std::weak_ptr<BizModel::Preset>& preset, quint16)
{
    const std::shared_ptr<BizModel::Preset> active = preset.lock();
    {
        const std::lock_guard lock(m_mutex);
        if (m_pActivePreset == active)
            return;
        m_pActivePreset = active;
    }
    announce(&DeviceList::signalActivedPresetKeyNoChanged, weak_from_this());
}

void DeviceItem::addScreen(const std::shared_ptr<ScreenItem>& screen)
{
    screen->m_pDevice = weak_from_this();
    screen->m_pSelf = screen;
    bool isFirst = false;
    {
        const std::lock_guard lock(m_mutex);
        isFirst = m_screens.isEmpty();
        m_screens += screen;
        if (isFirst) {
            m_pActiveScreen = screen;
            screen->setSelected(true);
        }
    }
    announce(&DeviceList::signalScreenAdded, weak_from_this(), screen);
    if (!isFirst)
        return;
    announce(&DeviceList::signalSelectedRegularScreensChanged, weak_from_this());
    announceActivedScreen();
}

void DeviceItem::removeScreen(const std::shared_ptr<ScreenItem>& screen)
{
    bool wasActive = false;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_screens.removeOne(screen))
            return;
        wasActive = m_pActiveScreen == screen;
        if (wasActive)
            m_pActiveScreen = m_screens.isEmpty() ? nullptr : m_screens.first();
    }
    announce(&DeviceList::signalScreenRemoved, weak_from_this(), screen);
    if (wasActive)
        announceActivedScreen();
}

void DeviceItem::setActivedScreen(const std::shared_ptr<ScreenItem>& screen)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_pActiveScreen == screen || !m_screens.contains(screen))
            return;
        m_pActiveScreen = screen;
    }
    announceActivedScreen();
}

void DeviceItem::announceActivedScreen() const
{
    announce(
        &DeviceList::signalActivedScreenChanged, std::const_pointer_cast<DeviceItem>(shared_from_this()),
        activedScreen());
}

DeviceItem::ScreenList DeviceItem::screenList() const
{
    const std::lock_guard lock(m_mutex);
    return m_screens;
}

DeviceItem::ScreenList DeviceItem::selectedScreens() const
{
    ScreenList selected = screenList();
    const auto isNot = [](const std::shared_ptr<ScreenItem>& screen) { return !screen->selected(); };
    selected.erase(std::remove_if(selected.begin(), selected.end(), isNot), selected.end());
    return selected;
}

void DeviceItem::addInput(const std::shared_ptr<InputItem>& input)
{
    input->m_pDevice = weak_from_this();
    input->m_pSelf = input;
    {
        const std::lock_guard lock(m_mutex);
        m_inputs += input;
    }
    announce(&DeviceList::signalInputAdded, weak_from_this(), input);
}

void DeviceItem::removeInput(const std::shared_ptr<InputItem>& input)
{
    {
        const std::lock_guard lock(m_mutex);
        if (!m_inputs.removeOne(input))
            return;
    }
    announce(&DeviceList::signalInputRemoved, weak_from_this(), input);
}

void DeviceItem::addPreset(const std::shared_ptr<PresetItem>& preset)
{
    {
        const std::lock_guard lock(m_mutex);
        m_presets += preset;
    }
    announce(&DeviceList::signalPresetAdded, weak_from_this(), preset);
}

bool DeviceItem::removePreset(const std::shared_ptr<PresetItem>& preset)
{
    bool wasActive = false;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_presets.removeOne(preset))
            return false;
        wasActive = m_pActivePreset == preset;
        if (wasActive)
            m_pActivePreset.reset();
    }
    announce(&DeviceList::signalPresetRemoved, weak_from_this(), preset);
    if (wasActive)
        announce(&DeviceList::signalActivedPresetKeyNoChanged, weak_from_this());
    return true;
}

DeviceItem::PresetList DeviceItem::presetList() const
{
    const std::lock_guard lock(m_mutex);
    return m_presets;
}

void DeviceItem::setSwap(bool swap)
{
    if (m_bSwap.exchange(swap) != swap)
        announce(&DeviceList::signalSwapStateChanged, weak_from_this());
}

void DeviceItem::setLoadToProgram(bool toProgram)
{
    if (m_bLoadToProgram.exchange(toProgram) != toProgram)
        announce(&DeviceList::signalLoadToPGMStateChanged, weak_from_this());
}

} // namespace Orvane::Bridge
