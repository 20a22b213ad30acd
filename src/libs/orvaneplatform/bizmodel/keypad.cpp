#include "bizmodel/keypad.h"

#include <algorithm>
#include <utility>

namespace Orvane::BizModel {

Keypad::Keypad(ProtoModel::File::s_KeypadInfo info, quint16 fileId, QString name)
    : m_info(std::move(info))
    , m_nFileId(fileId)
    , m_strName(std::move(name))
{
}

Keypad::~Keypad() = default;

std::optional<quint8> Keypad::buttonColor(quint8 buttonId) const
{
    const auto& keys = m_info.keypadArray;
    const auto found =
        std::find_if(keys.cbegin(), keys.cend(), [&](const ProtoModel::File::s_KeypadFile& key) {
            return key.buttonId == buttonId;
        });
    if (found == keys.cend())
        return std::nullopt;
    return found->buttonColor;
}

} // namespace Orvane::BizModel
