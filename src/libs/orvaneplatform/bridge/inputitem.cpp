#include "bridge/inputitem.h"

#include "bridge/announce_p.h"

namespace Orvane::Bridge {

using BizModel::DeviceList;
using Internal::announce;

InputItem::InputItem(quint32 id, const QString& name)
    : m_nId(id)
    , m_name(name)
{
}

InputItem::~InputItem() = default;

void InputItem::setName(const QString& name)
{
    if (m_name.set(name))
        announce(&DeviceList::signalInterfaceNameChanged, m_pDevice, m_pSelf);
}

void InputItem::setActive(bool active)
{
    if (m_bActive.exchange(active) != active)
        announce(&DeviceList::signalInterfaceSignalChanged, m_pDevice, m_pSelf);
}

void InputItem::setOverLoad(bool overLoad)
{
    if (m_bOverLoad.exchange(overLoad) != overLoad)
        announce(&DeviceList::signalInterfaceOverLoadChanged, m_pDevice, m_pSelf);
}

} // namespace Orvane::Bridge
