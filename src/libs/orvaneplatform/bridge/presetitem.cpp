#include "bridge/presetitem.h"

namespace Orvane::Bridge {

PresetItem::PresetItem(quint16 slot, FileType type)
    : m_nSlot(slot)
    , m_type(type)
    , m_name(QStringLiteral("Preset %1").arg(slot))
{
}

PresetItem::~PresetItem() = default;

} // namespace Orvane::Bridge
