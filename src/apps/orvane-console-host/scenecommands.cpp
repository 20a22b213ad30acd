#include "scenecommands.h"

#include <QRect>

namespace Orvane::ConsoleHost {

using BizModel::CapacityMode;
using BizModel::SceneType;
using MemoryModel::Control;
using MemoryModel::ScreenKey;

namespace {

QStringList capacityNames() // in the order of CapacityMode
{
    return {QStringLiteral("SL"), QStringLiteral("DL"), QStringLiteral("4K")};
}

Parameter sceneParameter()
{
    return Parameter::choice("scene", {QStringLiteral("PVW"), QStringLiteral("PGM")})
        .orElse(QStringLiteral("PVW"));
}

SceneType sceneOf(const Arguments& arguments)
{
    return arguments.text("scene") == QLatin1String("PGM") ? SceneType::PGM : SceneType::PVW;
}

Parameter idParameter(const char* name)
{
    return Parameter::integer(name, 0, MaxId);
}

/// A window in pixels of the mosaic, as four arguments.
std::vector<Parameter> withWindow(std::vector<Parameter> parameters)
{
    constexpr qint64 farthest = 1000000;
    for (const char* name : {"x", "y"})
        parameters.push_back(Parameter::integer(name, -farthest, farthest));
    for (const char* name : {"width", "height"})
        parameters.push_back(Parameter::integer(name, 1, farthest));
    return parameters;
}

QRect windowOf(const Arguments& arguments)
{
    return {
        arguments.integer("x"), arguments.integer("y"), arguments.integer("width"),
        arguments.integer("height")};
}

Answer addLayer(Control& control, const QString& device, const ScreenKey& screen, const Arguments& arguments)
{
    QString reason;
    const quint32 layer = control.addLayer(
        device, screen, sceneOf(arguments), arguments.id("input"), windowOf(arguments), &reason);
    return layer == 0 ? Answer::refused(reason) : Answer::done({{QStringLiteral("layer"), qint64(layer)}});
}

Answer addInput(Control& control, const QString& device, const Arguments& arguments)
{
    MemoryModel::InputRecord input;
    input.id = arguments.id("input");
    input.name = arguments.text("name");
    input.subcardId = arguments.id("subcard");
    input.connectorId = arguments.id("connector");
    input.capacity = CapacityMode(arguments.choice("capacity", capacityNames()));
    return answerOf(control.addInput(device, input));
}

MemoryModel::FileType presetTypeOf(const Arguments& arguments)
{
    return arguments.text("type") == QLatin1String("PGM") ? MemoryModel::FileType::PresetPGM
                                                          : MemoryModel::FileType::PresetPVW;
}

/// A change of the preset in a slot.
template <MemoryModel::ControlResult (Control::*change)(const QString&, MemoryModel::FileType, quint16)>
Answer changePreset(Control& control, const QString& device, const Arguments& arguments)
{
    return answerOf((control.*change)(device, presetTypeOf(arguments), quint16(arguments.integer("slot"))));
}

} // namespace

void addLayerCommands(const ModelCommandAdder& add)
{
    const Parameter scene = sceneParameter();
    const Parameter layer = idParameter("layer");
    const Parameter input = idParameter("input");
    add.screen("addLayer", "adds a layer and tells its number", withWindow({input, scene}), &addLayer);
    add.screen(
        "removeLayer", "removes the layer", {layer, scene},
        [](Control& control, const QString& device, const ScreenKey& screen, const Arguments& arguments) {
            return answerOf(control.removeLayer(device, screen, sceneOf(arguments), arguments.id("layer")));
        });
    add.screen(
        "renameLayer", "renames the layer", {layer, Parameter::text("name"), scene},
        [](Control& control, const QString& device, const ScreenKey& screen, const Arguments& arguments) {
            return answerOf(control.renameLayer(
                device, screen, sceneOf(arguments), arguments.id("layer"), arguments.text("name")));
        });
    add.screen(
        "selectLayers", "selects these layers alone", {Parameter::numbers("layers"), scene},
        [](Control& control, const QString& device, const ScreenKey& screen, const Arguments& arguments) {
            return answerOf(
                control.selectLayers(device, screen, sceneOf(arguments), arguments.numbers("layers")));
        });
    add.screen(
        "setLayerWindow", "moves and resizes the layer", withWindow({layer, scene}),
        [](Control& control, const QString& device, const ScreenKey& screen, const Arguments& arguments) {
            return answerOf(control.setLayerWindow(
                device, screen, sceneOf(arguments), arguments.id("layer"), windowOf(arguments)));
        });
    add.screen(
        "setLayerSource", "has the layer show another input", {layer, input, scene},
        [](Control& control, const QString& device, const ScreenKey& screen, const Arguments& arguments) {
            return answerOf(control.setLayerSource(
                device, screen, sceneOf(arguments), arguments.id("layer"), arguments.id("input")));
        });
}

void addInputCommands(const ModelCommandAdder& add)
{
    const Parameter input = idParameter("input");
    const Parameter capacity = Parameter::choice("capacity", capacityNames());
    const Parameter on = Parameter::flag("on");
    add.device(
        "addInput", "plugs an input in",
        {input, Parameter::text("name"), idParameter("subcard"), idParameter("connector"),
         capacity.orElse(QStringLiteral("SL"))},
        &addInput);
    add.device(
        "removeInput", "takes the input away", {input},
        [](Control& control, const QString& device, const Arguments& arguments) {
            return answerOf(control.removeInput(device, arguments.id("input")));
        });
    add.device(
        "renameInput", "renames the input", {input, Parameter::text("name")},
        [](Control& control, const QString& device, const Arguments& arguments) {
            return answerOf(control.renameInput(device, arguments.id("input"), arguments.text("name")));
        });
    add.device(
        "setSignal", "gives the input a signal or takes it away", {input, on},
        [](Control& control, const QString& device, const Arguments& arguments) {
            return answerOf(control.setSignal(device, arguments.id("input"), arguments.flag("on")));
        });
    add.device(
        "setOverload", "overloads the input, or no longer", {input, on},
        [](Control& control, const QString& device, const Arguments& arguments) {
            return answerOf(control.setOverload(device, arguments.id("input"), arguments.flag("on")));
        });
    add.device(
        "selectInput", "marks the input as the application does, 0 for none", {input},
        [](Control& control, const QString& device, const Arguments& arguments) {
            return answerOf(control.selectInput(device, arguments.id("input")));
        });
    add.device(
        "setConnectorCapacity", "sets what the connector carries",
        {idParameter("subcard"), idParameter("connector"), capacity},
        [](Control& control, const QString& device, const Arguments& arguments) {
            return answerOf(control.setConnectorCapacity(
                device, arguments.id("subcard"), arguments.id("connector"),
                CapacityMode(arguments.choice("capacity", capacityNames()))));
        });
}

void addPresetCommands(const ModelCommandAdder& add)
{
    const Parameter slot = Parameter::integer("slot", 0, MemoryModel::MaxPresetCount);
    const Parameter type = Parameter::choice("type", {QStringLiteral("PVW"), QStringLiteral("PGM")})
                               .orElse(QStringLiteral("PVW"));
    add.device(
        "addPreset", "stores the present scenes in an empty slot", {slot, type},
        &changePreset<&Control::addPreset>);
    add.device(
        "coverPreset", "stores the present scenes over a preset", {slot, type},
        &changePreset<&Control::coverPreset>);
    add.device("removePreset", "removes the preset", {slot, type}, &changePreset<&Control::removePreset>);
    add.device(
        "activatePreset", "marks the preset as the one loaded last, 0 for none", {slot, type},
        &changePreset<&Control::activatePreset>);
    add.device(
        "renamePreset", "renames the preset", {slot, Parameter::text("name"), type},
        [](Control& control, const QString& device, const Arguments& arguments) {
            return answerOf(control.renamePreset(
                device, presetTypeOf(arguments), quint16(arguments.integer("slot")), arguments.text("name")));
        });
    add.device(
        "clearPresets", "removes all presets of the device and its group", {},
        [](Control& control, const QString& device, const Arguments&) {
            return answerOf(control.clearPresets(device));
        });
}

} // namespace Orvane::ConsoleHost
