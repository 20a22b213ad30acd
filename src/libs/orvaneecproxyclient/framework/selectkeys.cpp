#include "selectkeys_p.h"

#include "ec/eckeyboardconfig.h"
#include "eccommanditem.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Orvane::ECProxy::Client::Internal {

void SelectKeys::collect(const std::shared_ptr<EC::s_ECCommandConfig>& config, quint16 orvaneKey)
{
    set(config ? config->findECButtonConfigsByOrvaneKey(orvaneKey)
               : QList<std::shared_ptr<EC::s_ECButtonConfig>>());
}

void SelectKeys::collectFunctions(const std::shared_ptr<EC::s_ECCommandConfig>& config)
{
    QList<std::shared_ptr<EC::s_ECButtonConfig>> found;
    if (config) {
        std::copy_if(
            config->m_buttons.cbegin(), config->m_buttons.cend(), std::back_inserter(found),
            [](const auto& button) { return button && button->OrvaneKey != 0; });
    }
    set(std::move(found));
}

void SelectKeys::set(QList<std::shared_ptr<EC::s_ECButtonConfig>> found)
{
    std::stable_sort(found.begin(), found.end(), [](const auto& left, const auto& right) {
        return left->OrderIndex < right->OrderIndex;
    });
    Buttons buttons;
    for (const auto& button : qAsConst(found))
        buttons.append(button);
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_buttons = buttons;
}

SelectKeys::Buttons SelectKeys::buttons() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_buttons;
}

int SelectKeys::count() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_buttons.size();
}

std::shared_ptr<EC::s_ECButtonConfig> SelectKeys::at(int index) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return index >= 0 && index < m_buttons.size() ? m_buttons.at(index).lock() : nullptr;
}

QList<std::shared_ptr<ECCommandItem>> SelectKeys::makeItems(int pageCount) const
{
    const Buttons keys = buttons();
    QList<std::shared_ptr<ECCommandItem>> items;
    for (int page = 0; page < pageCount; ++page) {
        for (const auto& weakKey : keys) {
            const auto key = weakKey.lock();
            if (!key)
                continue;
            auto item = std::make_shared<ECCommandItem>(nullptr);
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

int minUnusedButtonIndex(const QList<std::shared_ptr<ECCommandItem>>& items, int pageSize, int& orderIndex)
{
    for (const auto& item : items) {
        if (!item || item->isBindKeyPad() || !item->getObjectIdList().isEmpty())
            continue;
        orderIndex = item->ecButtonOrderIndex();
        return orderIndex + item->ecButtonPageIndex() * pageSize;
    }
    return -1;
}

} // namespace Orvane::ECProxy::Client::Internal
