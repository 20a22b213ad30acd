#include "presetkeycolors_p.h"

#include "bizmodel/keypad.h"

#include <limits>
#include <vector>

namespace Orvane::ECProxy::Client::Internal {

namespace {

/// The file's color of the item's key; none when the file has no such key, or no color for it.
std::optional<ECLEDColor> colorInFile(const BizModel::Keypad& keypad, const ECCommandItem& item)
{
    const qint32 buttonId = item.ecButtonIndex() + 1;
    if (buttonId > std::numeric_limits<quint8>::max())
        return std::nullopt;
    const auto color = keypad.buttonColor(quint8(buttonId));
    return color && *color <= quint8(ECLEDColor::On) ? std::make_optional(ECLEDColor(*color)) : std::nullopt;
}

} // namespace

void applyKeypadColors(const ECCommandItemList& items, const BizModel::Keypad& keypad)
{
    std::vector<std::pair<ECCommandItem*, ECLEDColor>> changes;
    for (const auto& item : items) {
        const auto color = item->isBindKeyPad() ? colorInFile(keypad, *item) : std::nullopt;
        if (!color)
            continue;
        if ((*color == ECLEDColor::Green) != (item->ecButtonColor() == ECLEDColor::Green))
            return;
        changes.emplace_back(item.get(), *color);
    }
    for (const auto& [item, color] : changes)
        item->setECButtonColor(color);
}

} // namespace Orvane::ECProxy::Client::Internal
