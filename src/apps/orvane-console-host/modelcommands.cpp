#include "modelcommands.h"

#include "bizmodel/preset.h"
#include "commandtable.h"
#include "memorydevicelist.h"
#include "memorymodel.h"
#include "modelcommandadder.h"
#include "modelpicture.h"
#include "scenecommands.h"

#include <QJsonDocument>

namespace Orvane::ConsoleHost {

using MemoryModel::Control;
using MemoryModel::ScreenKey;
using Model = MemoryModel::MemoryModel;

namespace {

constexpr qint64 MaxKeys = 0xFFFF;
constexpr qint64 MaxDelayMs = 3600000; // an hour

void addDeviceCommands(const ModelCommandAdder& add)
{
    const Parameter on = Parameter::flag("on");
    add.device("setOnline", "connects or disconnects the device", {on}, &Control::setOnline);
    add.device("setUpgrading", "begins or ends a firmware upgrade", {on}, &Control::setUpgrading);
    add.device(
        "setMultiScreens", "lets several screens be selected at once", {on}, &Control::setMultiScreens);
    add.device("setSwap", "lets a take exchange program and preview", {on}, &Control::setSwap);
    add.device("setLoadToPGM", "lets presets load to program", {on}, &Control::setLoadToPGM);
    add.device(
        "setLoadToPGMEnabled", "configures whether presets may load to program", {on},
        &Control::setLoadToPGMEnabled);
    add.device(
        "setConsolePlugin", "configures whether the console may show its plug-in display", {on},
        &Control::setConsolePlugin);
    add.device(
        "setOutputOnline", "connects or disconnects an output", {Parameter::integer("output", 0, MaxId), on},
        &Control::setOutputOnline);
    add.device(
        "setGroup", "puts the device into a group, \"0\" into none", {Parameter::text("group")},
        &Control::setGroup);
    add.device(
        "changeAddress", "gives the device another identity", {Parameter::text("to")},
        &Control::changeAddress);
    add.device(
        "activateDevice", "makes the device the one that the console works on", {}, &Control::activateDevice);
    add.device("removeDevice", "takes the device away", {}, &Control::removeDevice);
}

void addScreenCommands(const ModelCommandAdder& add)
{
    const Parameter on = Parameter::flag("on");
    add.screen("setFreeze", "freezes the program", {on}, &Control::setFreeze);
    add.screen("setFTB", "fades the program to black", {on}, &Control::setFTB);
    add.screen("setPGMEdit", "opens the program for editing", {on}, &Control::setPGMEdit);
    add.screen(
        "activateScreen", "makes the screen the one that layer and input keys work on", {},
        &Control::activateScreen);
    add.screen("removeScreen", "removes the screen", {}, &Control::removeScreen);
    add.screen("renameScreen", "renames the screen", {Parameter::text("name")}, &Control::renameScreen);
    add.screen(
        "moveScreen", "moves the screen to another one's place", {Parameter::text("target")},
        &Control::moveScreen);
    add.screen(
        "setScreenIndex", "puts the screen on another key, -1 on none",
        {Parameter::integer("index", -1, MaxKeys)}, &Control::setScreenIndex);
    add.screen(
        "setScreenState", "sets the screen's state", {Parameter::choice<BizModel::Screen::State>("state")},
        &Control::setScreenState);
    add.screen(
        "setEffectTime", "sets the duration of a transition",
        {Parameter::number("seconds", 0, MemoryModel::MaxEffectSeconds)}, &Control::setEffectTime);
    add.screen(
        "setEffectType", "sets how a transition mixes", {Parameter::choice<BizModel::EffectType>("type")},
        &Control::setEffectType);
    add.device(
        "selectScreens", "selects these screens alone", {Parameter::texts("screens")},
        &Control::selectScreens);
}

Answer addScreen(Model& model, const Arguments& arguments)
{
    const auto type = arguments.text("type") == QLatin1String("AUX") ? MemoryModel::ScreenType::AUXScreen
                                                                     : MemoryModel::ScreenType::RegularScreen;
    QString reason;
    const ScreenKey screen = model.control().addScreen(deviceOf(arguments, model), type, &reason);
    return screen.id == 0 ? Answer::refused(reason)
                          : Answer::done({{QStringLiteral("screen"), screenName(screen)}});
}

MemoryModel::Times timesOf(const Arguments& arguments)
{
    return arguments.flag("always") ? MemoryModel::Times::Always : MemoryModel::Times::Once;
}

} // namespace

void addModelCommands(CommandTable& table, Model& model)
{
    const ModelCommandAdder add(table, model);
    addDeviceCommands(add);
    addScreenCommands(add);
    addLayerCommands(add);
    addInputCommands(add);
    addPresetCommands(add);
    table.add(
        "setCompatibleUpgrading", "begins or ends an upgrade for compatibility", {Parameter::flag("on")},
        model.control(), &Control::setCompatibleUpgrading);
    table.add(
        "addScreen", "adds a screen and tells its name",
        {Parameter::choice("type", {QStringLiteral("regular"), QStringLiteral("AUX")})
             .orElse(QStringLiteral("regular")),
         deviceParameter()},
        [&model](const Arguments& arguments) { return addScreen(model, arguments); });
    table.add(
        "showPresetPage", "turns the application's own page of presets",
        {Parameter::integer("page", 0, MaxKeys)}, model.control(), &Control::showPresetPage);
    table.add(
        "setPresetMode", "sets what the next press of a preset key does",
        {Parameter::choice("mode", presetModeNames())}, [&model](const Arguments& arguments) {
            model.deviceList().setPresetOperateMode(
                BizModel::Preset::PresetOptMode(arguments.choice("mode", presetModeNames())));
        });
}

void addOperationCommands(CommandTable& table, Model& model)
{
    const Parameter operation = Parameter::choice("operation", MemoryModel::operationNames());
    const Parameter always = Parameter::flag("always").orElse(false);
    table.add(
        "fail", "lets the next run of an operation of the model fail, or every run",
        {operation, Parameter::text("text").orElse(QStringLiteral("as ordered")), always},
        [&model](const Arguments& arguments) {
            model.operations().fail(
                *MemoryModel::findOperation(arguments.text("operation")), arguments.text("text"),
                timesOf(arguments));
        });
    table.add(
        "delay", "lets the next run of an operation take longer, or every run",
        {operation, Parameter::integer("ms", 0, MaxDelayMs), always}, [&model](const Arguments& arguments) {
            model.operations().delay(
                *MemoryModel::findOperation(arguments.text("operation")),
                std::chrono::milliseconds(arguments.integer("ms")), timesOf(arguments));
        });
    table.add(
        "clearOrders", "forgets all such orders", {}, model.operations(),
        &MemoryModel::Operations::clearAllOrders);
}

void addShowCommands(CommandTable& table, Model& model)
{
    table.add("screens", "tells what the active device's screens show", {}, [&model] {
        return screensToJson(pictureActiveDevice(model));
    });
    table.add("inputs", "tells the active device's inputs", {}, [&model] {
        return inputsToJson(pictureActiveDevice(model));
    });
    table.add("presets", "tells the presets of the active device and its group", {}, [&model] {
        return presetsToJson(pictureActiveDevice(model));
    });
    table.add("show", "tells the whole show, as a show file", {}, [&model] {
        return QJsonObject{{QStringLiteral("show"), QJsonDocument::fromJson(model.show()).object()}};
    });
    table.add(
        "loadShow", "replaces the show by a file's", {Parameter::text("file")},
        [&model](const Arguments& arguments) {
            QStringList faults;
            model.loadFile(arguments.text("file"), faults);
            return Answer::of(faults.join(QStringLiteral("; ")));
        });
    table.add(
        "saveShow", "writes the show to a file", {Parameter::text("file")},
        [&model](const Arguments& arguments) {
            QString error;
            model.saveFile(arguments.text("file"), error);
            return Answer::of(error);
        });
}

} // namespace Orvane::ConsoleHost
