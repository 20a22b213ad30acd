#include "scenecommands.h"

#include "enumwords_p.h"

namespace Orvane::ConsoleHost {

using BizModel::CapacityMode;
using BizModel::SceneType;
using MemoryModel::Control;
using MemoryModel::ScreenKey;

namespace {

Parameter sceneParameter()
{
    return Parameter::choice<SceneType>("scene").orElse(Internal::wordOf(SceneType::PVW));
}

Parameter idParameter(const char* name)
{
    return Parameter::integer(name, 0, MaxId);
}

Answer addLayer(Control& control, const QString& device, const ScreenKey& screen, const Arguments& arguments)
{
    QString reason;
    const quint32 layer = control.addLayer(
        device, screen, arguments.choice<SceneType>("scene"), arguments.id("input"), windowOf(arguments),
        &reason);
    return layer == 0 ? Answer::refused(reason) : Answer::done({{QStringLiteral("layer"), qint64(layer)}});
}

Answer addInput(Control& control, const QString& device, const Arguments& arguments)
{
    MemoryModel::InputRecord input;
    input.id = arguments.id("input");
    input.name = arguments.text("name");
    input.subcardId = arguments.id("subcard");
    input.connectorId = arguments.id("connector");
    input.capacity = arguments.choice<CapacityMode>("capacity");
    return answerOf(control.addInput(device, input));
}

} // namespace

void addLayerCommands(const ModelCommandAdder& add)
{
    const Parameter scene = sceneParameter();
    const Parameter layer = idParameter("layer");
    const Parameter input = idParameter("input");
    add.screen("addLayer", "adds a layer and tells its number", withWindow({input, scene}), &addLayer);
    add.screen("removeLayer", "removes the layer", {scene, layer}, &Control::removeLayer);
    add.screen(
        "renameLayer", "renames the layer", {scene, layer, Parameter::text("name")}, &Control::renameLayer);
    add.screen(
        "selectLayers", "selects these layers alone", {scene, Parameter::numbers("layers")},
        &Control::selectLayers);
    add.screen(
        "setLayerWindow", "moves and resizes the layer", withWindow({scene, layer}),
        &Control::setLayerWindow);
    add.screen(
        "setLayerSource", "has the layer show another input", {scene, layer, input},
        &Control::setLayerSource);
}

void addInputCommands(const ModelCommandAdder& add)
{
    const Parameter input = idParameter("input");
    const Parameter subcard = idParameter("subcard");
    const Parameter connector = idParameter("connector");
    const Parameter capacity = Parameter::choice<CapacityMode>("capacity");
    const Parameter name = Parameter::text("name");
    const Parameter on = Parameter::flag("on");
    add.device(
        "addInput", "plugs an input in",
        {input, name, subcard, connector, capacity.orElse(Internal::wordOf(CapacityMode::_SL))}, &addInput);
    add.device("removeInput", "takes the input away", {input}, &Control::removeInput);
    add.device("renameInput", "renames the input", {input, name}, &Control::renameInput);
    add.device("setSignal", "gives the input a signal or takes it away", {input, on}, &Control::setSignal);
    add.device("setOverload", "overloads the input, or no longer", {input, on}, &Control::setOverload);
    add.device(
        "selectInput", "marks the input as the application does, 0 for none", {input}, &Control::selectInput);
    add.device(
        "setConnectorCapacity", "sets what the connector carries", {subcard, connector, capacity},
        &Control::setConnectorCapacity);
}

void addPresetCommands(const ModelCommandAdder& add)
{
    const Parameter slot = Parameter::integer("slot", 0, MemoryModel::MaxPresetCount);
    const Parameter type = presetTypeParameter();
    add.device("addPreset", "stores the present scenes in an empty slot", {type, slot}, &Control::addPreset);
    add.device("coverPreset", "stores the present scenes over a preset", {type, slot}, &Control::coverPreset);
    add.device("removePreset", "removes the preset", {type, slot}, &Control::removePreset);
    add.device(
        "activatePreset", "marks the preset as the one loaded last, 0 for none", {type, slot},
        &Control::activatePreset);
    add.device(
        "renamePreset", "renames the preset", {type, slot, Parameter::text("name")}, &Control::renamePreset);
    add.device("clearPresets", "removes all presets of the device and its group", {}, &Control::clearPresets);
}

} // namespace Orvane::ConsoleHost
