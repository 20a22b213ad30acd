#include "bridge/layeritem.h"

namespace Orvane::Bridge {

LayerItem::LayerItem(const BizModel::s_ScreenLayerId& place, quint32 inputId, const QRect& window)
    : m_place(place)
    , m_nInput(inputId)
    , m_window(window)
{
}

LayerItem::~LayerItem() = default;

QString LayerItem::name() const
{
    return QStringLiteral("Layer %1").arg(layerId());
}

std::shared_ptr<LayerItem> LayerItem::copy() const
{
    auto made = std::make_shared<LayerItem>(m_place, m_nInput, m_window.get());
    made->setCapacity(m_capacity);
    return made;
}

} // namespace Orvane::Bridge
