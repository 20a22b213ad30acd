#include "keygroup_p.h"

#include "ec/eckeyboardconfig.h"
#include "eccommanditem_p.h"
#include "ecconsolemanager.h"

#include <algorithm>

namespace Orvane::ECProxy::Client::Internal {

// ---- Keys -----------------------------------------------------------------------------------------------

void KeyGroup::collect(const std::shared_ptr<EC::s_ECCommandConfig>& config)
{
    QList<std::shared_ptr<EC::s_ECButtonConfig>> found;
    if (config)
        found = m_selectKeyCode != 0 ? config->findECButtonConfigsByOrvaneKey(m_selectKeyCode)
                                     : config->m_buttons;
    const auto hasNoFunction = [](const auto& button) { return !button || button->OrvaneKey == 0; };
    found.erase(std::remove_if(found.begin(), found.end(), hasNoFunction), found.end());
    std::stable_sort(found.begin(), found.end(), [](const auto& left, const auto& right) {
        return left->OrderIndex < right->OrderIndex;
    });
    const std::lock_guard<std::mutex> lock(m_keysMutex);
    m_buttons.clear();
    std::copy(found.cbegin(), found.cend(), std::back_inserter(m_buttons));
}

void KeyGroup::make(const std::shared_ptr<EC::s_ECCommandConfig>& config, int pageCount)
{
    writeItems([&] {
        collect(config);
        auto items = makeItems(pageCount);
        if (m_type) {
            store().clearECCommandItems(*m_type);
            for (const auto& item : qAsConst(items))
                store().appendECCommandItem(*m_type, item);
            return;
        }
        const std::lock_guard<std::mutex> lock(m_keysMutex);
        m_ownItems.swap(items);
    });
}

int KeyGroup::pageSize() const
{
    const std::lock_guard<std::mutex> lock(m_keysMutex);
    return m_buttons.size();
}

std::shared_ptr<EC::s_ECButtonConfig> KeyGroup::button(int index) const
{
    const std::lock_guard<std::mutex> lock(m_keysMutex);
    return m_buttons.value(index).lock();
}

bool KeyGroup::contains(quint32 ecKey) const
{
    const std::lock_guard<std::mutex> lock(m_keysMutex);
    return std::any_of(m_buttons.cbegin(), m_buttons.cend(), [ecKey](const auto& weakButton) {
        const auto button = weakButton.lock();
        return button && button->ECKey == ecKey;
    });
}

// ---- Items ----------------------------------------------------------------------------------------------

ECConsoleManager& KeyGroup::store()
{
    return *ECConsoleManager::instance();
}

ECCommandItemList KeyGroup::makeItems(int pageCount) const
{
    ECCommandItemList items;
    const std::lock_guard<std::mutex> lock(m_keysMutex);
    for (int page = 0; page < pageCount; ++page) {
        for (const auto& weakKey : m_buttons) {
            const auto key = weakKey.lock();
            if (!key)
                continue;
            auto item = std::make_shared<ECCommandItem>();
            item->setECButtonPageIndex(qint16(page));
            item->setECButtonOrderIndex(qint16(key->OrderIndex));
            item->setECButtonKey(key->ECKey);
            if (key->pECOledCfg)
                item->setECOledKey(key->pECOledCfg->ECKey);
            items.append(item);
        }
    }
    return items;
}

ECCommandItemList KeyGroup::items(const QString& ip) const
{
    if (m_type == KeyboardType::Screen)
        return store().screenECCommandItems(ip);
    if (m_type == KeyboardType::Input)
        return store().inputECCommandItems(ip);
    if (m_type == KeyboardType::Preset)
        return store().presetECCommandItems(ip);
    const std::lock_guard<std::mutex> lock(m_keysMutex);
    return m_ownItems;
}

KeyPlace KeyGroup::placeOf(const ECCommandItem& item) const
{
    const int pageIndex = item.ecButtonPageIndex();
    const int orderIndex = item.ecButtonOrderIndex();
    return {pageIndex * pageSize() + orderIndex, orderIndex, pageIndex};
}

int KeyGroup::minUnusedButtonIndex(const ECCommandItemList& items, int& orderIndex) const
{
    for (const auto& item : items) {
        // A free layer item keeps the pair that says whose screen it is.
        if (item->isBindKeyPad() || (m_type != KeyboardType::Layer && !item->getObjectIdList().isEmpty()))
            continue;
        const KeyPlace place = placeOf(*item);
        orderIndex = place.orderIndex;
        return place.buttonIndex;
    }
    return -1;
}

ECObjectIdList KeyGroup::objectsOn(const QString& ip, int buttonIndex) const
{
    return readItems([&] { return store().findBindingObject(ip, *m_type, buttonIndex); });
}

ECCommandItemPtr KeyGroup::itemAt(const QString& ip, const KeyPlace& place) const
{
    return store().findEcCommandItem(ip, *m_type, place.orderIndex, place.pageIndex);
}

ECCommandItemPtr KeyGroup::itemOf(const QString& ip, const ECObjectId& id) const
{
    return store().findBindingECItem(ip, *m_type, id);
}

ECCommandItemPtr KeyGroup::rename(const QString& ip, const ECObjectId& id, const QString& name)
{
    return writeItems([&] {
        auto item = itemOf(ip, id);
        if (item)
            item->setECOledText(name);
        return item;
    });
}

void KeyGroup::initDevice(const QString& ip)
{
    store().initDeviceECCommandItems(ip);
}

void KeyGroup::forgetDevice(const QString& ip)
{
    writeItems([&] { unbindAll(ip); });
}

void KeyGroup::bind(
    const ECCommandItemPtr& item, const ECObjectIdList& ids, ECLEDColor color, const QString& text) const
{
    ECCommandItemPrivate::of(*item).change([&, pageSize = pageSize()](ECCommandItemValues& values) {
        const int buttonIndex = values.m_nECButtonPageIndex * pageSize + values.m_nECButtonOrderIndex;
        values.rebind(*m_type, ids, buttonIndex, {color, text, false});
    });
}

ECCommandItemPtr KeyGroup::unbind(const QString& ip, const ECObjectId& id) const
{
    return store().resetECButtonData(ip, *m_type, id);
}

void KeyGroup::unbindAll(const QString& ip) const
{
    store().resetECCommandItems(ip, *m_type);
}

} // namespace Orvane::ECProxy::Client::Internal
