#include "control_p.h"
#include "layers.h"

#include <algorithm>

namespace Orvane::MemoryModel {

using BizModel::SceneType;

/// Calls @p function with the change, the device and the input; refused when one is not there.
template <typename Function>
ControlResult Control::onInput(const QString& device, quint32 inputId, Function function)
{
    return onDevice(device, [&](Change& change, const auto& owner) {
        const std::shared_ptr<MemoryInput> input = owner->data(change).inputs.value(inputId);
        return input ? resultOf(function, change, owner, input) : noInput(inputId);
    });
}

/// Sets a value of the input and announces it.
template <typename Member, typename T, typename Signal>
ControlResult Control::setOnInput(
    const QString& device, quint32 inputId, Member member, const T& value, Signal signal)
{
    return onInput(device, inputId, [&](Change& change, const auto& owner, const auto& input) {
        change.set(input->data(change).*member, value, signal, owner, input);
    });
}

ControlResult Control::addInput(const QString& device, const InputRecord& input)
{
    return onDevice(device, [&](Change& change, const auto& owner) {
        auto& inputs = owner->data(change).inputs;
        const auto added = std::make_shared<MemoryInput>(m_pHub, input);
        const bool connectorTaken = std::any_of(inputs.cbegin(), inputs.cend(), [&](const auto& other) {
            return owner->connector(*other) == owner->connector(*added);
        });
        if (input.id == 0 || inputs.contains(input.id))
            return ControlResult::refused(
                input.id == 0 ? QStringLiteral("an input's number is at least 1")
                              : QStringLiteral("the device has an input %1 already").arg(input.id));
        if (!owner->connector(*added) || connectorTaken)
            return ControlResult::refused(QStringLiteral("connector %1 of sub-card %2 is %3")
                                              .arg(input.connectorId)
                                              .arg(input.subcardId)
                                              .arg(
                                                  connectorTaken ? QStringLiteral("taken by another input")
                                                                 : QStringLiteral("not there")));
        inputs.insert(input.id, added);
        change.announce(&DeviceList::signalInputAdded, owner, added);
        return ControlResult::done();
    });
}

ControlResult Control::removeInput(const QString& device, quint32 inputId)
{
    return onInput(device, inputId, [&](Change& change, const auto& owner, const auto& input) {
        MemoryDevice::Data& state = owner->data(change);
        state.inputs.remove(inputId);
        change.announce(&DeviceList::signalInputRemoved, owner, input);
        if (state.selectedInput == inputId)
            change.set(state.selectedInput, 0, &DeviceList::signalSelectedInputChanged, owner);
        for (const auto& screen : std::as_const(state.screens)) {
            for (const SceneType scene : {SceneType::PGM, SceneType::PVW}) {
                for (const auto& layer : std::as_const(screen->data(change).layers(scene))) {
                    if (layer->data(change).inputId == inputId)
                        setSource(change, layer, 0);
                }
            }
        }
    });
}

ControlResult Control::renameInput(const QString& device, quint32 inputId, const QString& name)
{
    return setOnInput(device, inputId, &InputRecord::name, name, &DeviceList::signalInterfaceNameChanged);
}

ControlResult Control::setSignal(const QString& device, quint32 inputId, bool present)
{
    return setOnInput(
        device, inputId, &InputRecord::signal, present, &DeviceList::signalInterfaceSignalChanged);
}

ControlResult Control::setOverload(const QString& device, quint32 inputId, bool overload)
{
    return setOnInput(
        device, inputId, &InputRecord::overload, overload, &DeviceList::signalInterfaceOverLoadChanged);
}

ControlResult Control::setConnectorCapacity(
    const QString& device, quint32 subcardId, quint32 connectorId, BizModel::CapacityMode capacity)
{
    return onDevice(device, [&](Change& change, const auto& owner) {
        const std::shared_ptr<MemorySubcard> card = owner->subcard(subcardId);
        const auto connector = card ? card->connector(connectorId) : nullptr;
        if (!connector)
            return ControlResult::refused(
                QStringLiteral("sub-card %1 has no connector %2").arg(subcardId).arg(connectorId));
        if (capacity < BizModel::CapacityMode::_SL || capacity > BizModel::CapacityMode::_4K)
            return ControlResult::refused(QStringLiteral("there is no capacity %1").arg(int(capacity)));
        if (std::exchange(connector->data(change), capacity) == capacity)
            return ControlResult::done();
        for (const std::shared_ptr<MemoryInput>& input : std::as_const(owner->data(change).inputs)) {
            if (owner->connector(*input) == connector)
                input->data(change).capacity = capacity;
        }
        change.announce(&DeviceList::signalConnectorCapacityChanged, owner, card, connector);
        return ControlResult::done();
    });
}

ControlResult Control::selectInput(const QString& device, quint32 inputId)
{
    return onDevice(device, [inputId](Change& change, const auto& owner) {
        MemoryDevice::Data& state = owner->data(change);
        if (inputId != 0 && !state.inputs.contains(inputId))
            return noInput(inputId);
        change.set(state.selectedInput, inputId, &DeviceList::signalSelectedInputChanged, owner);
        return ControlResult::done();
    });
}

quint32 Control::selectedInput(const QString& device) const
{
    const Guard guard(*m_pHub);
    const std::shared_ptr<MemoryDevice> owner = m_list.device(guard, device);
    return owner ? std::as_const(*owner).data(guard).selectedInput : 0;
}

} // namespace Orvane::MemoryModel
