#include "inputkeyitems_p.h"

#include "log_p.h"
#include "modelaccess_p.h"

#include "bizmodel/device.h"
#include "bizmodel/input.h"
#include "bizmodel/layer.h"
#include "bizmodel/screen.h"

#include <algorithm>
#include <set>

namespace Orvane::ECProxy::Client::Internal {

namespace {

ECObjectId objectId(const BizModel::Interface& input)
{
    return {input.interfaceId(), 0};
}

/// What colors the input keys of a device, read once for all of them.
class InputColors {
public:
    explicit InputColors(const BizModel::Device& device)
        : m_pScreen(device.activedScreen().lock())
    {
        if (!m_pScreen)
            return;
        const auto layers = m_pScreen->selectedLayers(BizModel::Enum::Scene::BothScenes);
        for (const auto& weakLayer : layers) {
            const auto layer = weakLayer.lock();
            if (layer && layer->sourceType() == BizModel::SourceType::Input
                && layer->sceneType() == BizModel::SceneType::PVW)
                m_feedingSelection.insert(layer->sourceId());
        }
    }

    ECLEDColor getInputButtonColor(const BizModel::Interface& input) const
    {
        if (!m_pScreen)
            return ECLEDColor::Off;
        const bool isActive = input.isActive();
        const bool isOverLoad = input.isOverLoad();
        if (m_feedingSelection.count(input.interfaceId()) != 0)
            return isActive && !isOverLoad ? ECLEDColor::Green : ECLEDColor::Red;
        if (!isActive)
            return ECLEDColor::Off;
        return isOverLoad ? ECLEDColor::Orange : ECLEDColor::Yellow;
    }

private:
    const ScreenPtr m_pScreen;
    std::set<quint32> m_feedingSelection;
};

} // namespace

QList<InputPtr> sortedInputs(const BizModel::Device& device)
{
    QList<InputPtr> inputs;
    const auto weakInputs = device.validInputs();
    for (const auto& weakInput : weakInputs) {
        if (const auto input = weakInput.lock())
            inputs.append(input);
    }
    std::stable_sort(inputs.begin(), inputs.end(), [](const InputPtr& left, const InputPtr& right) {
        return left->interfaceId() < right->interfaceId();
    });
    return inputs;
}

std::optional<InputKeyItems::DeviceInputs> InputKeyItems::readActivedDevice()
{
    const auto device = activedDevice();
    if (!device)
        return std::nullopt;
    DeviceInputs read{device->ipMacSn(), {}};
    const InputColors colors(*device);
    const auto sorted = sortedInputs(*device);
    for (const InputPtr& input : sorted)
        read.inputs.push_back({input->interfaceId(), input->name(), colors.getInputButtonColor(*input)});
    return read;
}

void InputKeyItems::update()
{
    const int withoutKey = updateItems(readActivedDevice, [this](const std::optional<DeviceInputs>& device) {
        return device ? bindInputs(*device) : 0;
    });
    for (int i = 0; i < withoutKey; ++i)
        ecWarning(lcPaint, " Binding screen data error...");
}

/// Returns how many inputs are left without a key.
int InputKeyItems::bindInputs(const DeviceInputs& device) const
{
    const ECCommandItemList items = this->items(device.ip);
    const auto& inputs = device.inputs;
    for (int i = 0; i < items.size(); ++i) {
        const auto& item = items.at(i);
        const bool isUsed = std::size_t(i) < inputs.size();
        const ECObjectIdList ids = isUsed ? ECObjectIdList{{inputs[std::size_t(i)].id, 0}} : ECObjectIdList();
        // A key that keeps its input is never free in between.
        if (item->getObjectIdList() != ids)
            item->resetECCommandItem();
        if (!isUsed)
            continue;
        const KeyInput& input = inputs[std::size_t(i)];
        bind(device.ip, placeOf(*item), ids, input.color, input.name);
    }
    return std::max(0, int(inputs.size()) - items.size());
}

InputPtr InputKeyItems::findBindingInput(const BizModel::Device& device, int buttonIndex) const
{
    if (buttonIndex < 0)
        return nullptr; // inputs without a key have this button index, too
    const ECObjectIdList ids = objectsOn(device.ipMacSn(), buttonIndex);
    const auto inputs = device.validInputs();
    for (const auto& weakInput : inputs) {
        auto input = weakInput.lock();
        if (input && ids.contains(objectId(*input)))
            return input;
    }
    return nullptr;
}

ECCommandItemPtr InputKeyItems::findItem(
    const BizModel::Device& device, const BizModel::Interface& input) const
{
    return itemOf(device.ipMacSn(), objectId(input));
}

ECCommandItemPtr InputKeyItems::rename(const BizModel::Device& device, const BizModel::Interface& input)
{
    return KeyGroup::rename(device.ipMacSn(), objectId(input), input.name());
}

} // namespace Orvane::ECProxy::Client::Internal
