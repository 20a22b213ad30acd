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

/// One line for each input. They can be hundreds at each change of one, so their text is made once.
void logInputsWithoutKey(int count)
{
    static const QString text = QStringLiteral(" Binding screen data error...");
    const QMessageLogContext context(
        QT_MESSAGELOG_FILE, QT_MESSAGELOG_LINE, QT_MESSAGELOG_FUNC, lcPaint().categoryName());
    for (int i = 0; i < count; ++i) {
        if (lcPaint().isWarningEnabled())
            qt_message_output(QtWarningMsg, context, text);
        if (KeyTracing::current())
            KeyTracing::addLine(lcPaint(), QtWarningMsg, "%s", qUtf8Printable(text));
    }
}

} // namespace

InputsById sortedInputs(const BizModel::Device& device)
{
    InputsById inputs;
    const auto weakInputs = device.validInputs();
    inputs.reserve(std::size_t(weakInputs.size()));
    for (const auto& weakInput : weakInputs) {
        if (auto input = weakInput.lock())
            inputs.emplace_back(input->interfaceId(), std::move(input));
    }
    const auto isBefore = [](const auto& left, const auto& right) { return left.first < right.first; };
    if (!std::is_sorted(inputs.cbegin(), inputs.cend(), isBefore)) // models mostly list them so
        std::stable_sort(inputs.begin(), inputs.end(), isBefore);
    return inputs;
}

std::optional<InputKeyItems::DeviceInputs> InputKeyItems::readActivedDevice() const
{
    const auto device = activedDevice();
    if (!device)
        return std::nullopt;
    DeviceInputs read{device->ipMacSn(), {}, 0};
    const InputColors colors(*device);
    const auto sorted = sortedInputs(*device);
    const auto withKey = std::min(sorted.size(), std::size_t(items(read.ip).size()));
    for (std::size_t i = 0; i < withKey; ++i) {
        const auto& [id, input] = sorted[i];
        read.inputs.push_back({id, input->name(), colors.getInputButtonColor(*input)});
    }
    read.withoutKey = int(sorted.size() - withKey);
    return read;
}

void InputKeyItems::update()
{
    logInputsWithoutKey(updateItems(
        [this] { return readActivedDevice(); },
        [this](const std::optional<DeviceInputs>& device) {
            if (device)
                bindInputs(*device);
            return device ? device->withoutKey : 0;
        }));
}

void InputKeyItems::bindInputs(const DeviceInputs& device) const
{
    auto input = device.inputs.cbegin();
    const ECCommandItemList items = this->items(device.ip);
    for (const ECCommandItemPtr& item : items) {
        if (input == device.inputs.cend()) {
            item->resetECCommandItem();
            continue;
        }
        bind(item, {{input->id, 0}}, input->color, input->name);
        ++input;
    }
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
