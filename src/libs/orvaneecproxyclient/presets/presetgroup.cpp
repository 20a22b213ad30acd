#include "presetgroup_p.h"

#include "bizmodel/device.h"
#include "bizmodel/keypad.h"

namespace Orvane::ECProxy::Client::Internal {

std::shared_ptr<BizModel::Keypad> keypadFile(const BizModel::Device& device)
{
    const auto files = device.files(BizModel::Enum::File::keypad);
    for (const auto& file : files) {
        if (auto keypad = std::dynamic_pointer_cast<BizModel::Keypad>(file.lock()))
            return keypad;
    }
    return nullptr;
}

} // namespace Orvane::ECProxy::Client::Internal
