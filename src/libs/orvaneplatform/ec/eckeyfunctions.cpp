#include "ec/eckeyfunctions.h"

#include "bizmodel/translations.h"

#include <algorithm>

namespace Orvane::EC {

namespace {

using namespace BizModel::Translate;

constexpr char GreenWhileHeld[] = "`Green` while held";

const KeyFunction NoFunction{"no function"};

KeyFunction pageKey(const char* name, const char* release)
{
    KeyFunction function{name, "", "", release, GreenWhileHeld, "the page", {TR_THE_PAGE}};
    function.turnsPage = true;
    return function;
}

KeyFunction pageUp()
{
    return pageKey("page up", "shows the page before");
}

KeyFunction pageDown()
{
    return pageKey("page down", "shows the next page");
}

KeyFunction typing(const char* name, const char* press)
{
    KeyFunction function{name, press, "", "", GreenWhileHeld};
    function.worksInDialog = true;
    return function;
}

KeyFunction lockKeypad()
{
    KeyFunction function{
        "lock keypad (hold)", "", "for 2 s: locks the keypad; the application unlocks it", "",
        "`Green` while held, and while locked"};
    function.worksWhenLocked = true;
    return function;
}

std::vector<KeyFunction> screenFunctions()
{
    return {
        NoFunction,
        {"select",
         "selects its screen and makes it the active one, deselects a selected one, makes a screen on a key "
         "that "
         "has none",
         "", "", "`Green` selected, `Yellow` not, `Off` no screen", "the screen's name"},
        pageUp(),
        pageDown(),
        {"freeze PGM", "freezes the selected screens, or lets them go", "", "",
         "`Red` while one is frozen, in any device of the group"},
        {"match PGM", "copies program to preview", "", "",
         "`Green` until released; `Off` as soon as it has failed"},
        {"fade to black", "fades the selected screens to black, or back", "", "",
         "`Green` while one is black, in any device of the group"},
        {"cut", "brings preview to program at once", "", "", "`Green` until it is done"},
        {"take", "brings preview to program with the active screen's transition", "", "",
         "`Green` until it is handed over"},
        {"mix type",
         "sets the active screen's transition to fade",
         "",
         "",
         "`Green` always",
         "\"Fade\"",
         {TR_THE_FADE}},
        {"transition time up", "adds 0.1 s, from 10.0 s on to 0.1 s", "goes on, faster and faster",
         "gives the active screen the time", GreenWhileHeld, "the time"},
        {"swap", "switches whether a take exchanges program and preview", "", "", "`Green` while on"},
        NoFunction,
        NoFunction,
        {"PGM edit",
         "opens the program of the selected regular screens for editing, unless all have it open already: "
         "then "
         "closes it",
         "", "", "`Green` while one has it open"},
        {"transition time down", "takes 0.1 s off, from 0.1 s on to 10.0 s", "goes on, faster and faster",
         "gives the active screen the time", GreenWhileHeld, "the time"},
    };
}

std::vector<KeyFunction> layerFunctions()
{
    return {
        NoFunction,
        {"select", "selects its layer alone; makes a layer on a key that has none", "", "",
         "`Green` selected, `Yellow` not, `Off` no layer", "the layer's name"},
        pageUp(),
        pageDown(),
        {"remove selected", "removes the selected layers", "", "", GreenWhileHeld},
        {"clear all (hold)", "on the on-screen console: asks whether to remove all layers",
         "for 3 s: removes all layers of the scene that the screen's operations aim at", "",
         "`Green` until released or done"},
        {"to the front", "", "for 3 s: brings the selected layers to the very front",
         "before 3 s: brings them one step forward", GreenWhileHeld},
        {"to the back", "", "for 3 s: sends the selected layers to the very back",
         "before 3 s: sends them one step back", GreenWhileHeld},
        {"capacity",
         "sets the capacity of the layers made next: SL, DL, 4K and over again",
         "",
         "",
         GreenWhileHeld,
         "the capacity",
         {TR_THE_SL, TR_THE_DL, TR_THE_4K}},
        {"full screen",
         "once: each selected layer fills the outputs that it touches; twice within 200 ms: the whole mosaic",
         "",
         "",
         GreenWhileHeld,
         "\"Full screen\"",
         {TR_THE_FULL_SCREEN}},
    };
}

std::vector<KeyFunction> inputFunctions()
{
    return {
        NoFunction,
        {"select", "makes all selected layers of the active screen show its input", "", "",
         "`Green` it feeds the selected preview layer, `Red` it feeds it without a signal or overloaded, "
         "`Yellow` it has a signal, `Orange` it is overloaded, `Off` it has none",
         "the input's name"},
        pageUp(),
        pageDown(),
    };
}

std::vector<KeyFunction> presetFunctions()
{
    return {
        NoFunction,
        {"select", "loads its preset; stores or removes it when that is armed", "", "",
         "`Green` the active preset, `Yellow` another, `Off` a free slot", "the preset's name"},
        pageUp(),
        pageDown(),
        {"remove", "arms removing for the next preset key; again: disarms", "", "",
         "`Yellow`, flashing, while armed"},
        {"clear all (hold)", "on the on-screen console: asks whether to remove all presets",
         "for 3 s: removes all presets", "", "`Green` until released or done"},
        {"save", "arms storing for the next preset key; again: disarms", "", "",
         "`Yellow`, flashing, while armed"},
        NoFunction,
        NoFunction,
        {"load to PGM or PVW",
         "lets presets load to PVW at once, to PGM after a question",
         "",
         "",
         "`Red` while presets load to PGM",
         "where presets load to; blank when the device cannot change it",
         {TR_THE_LOAD_TO_PGM, TR_THE_LOAD_TO_PVW}},
    };
}

std::vector<KeyFunction> numberFunctions()
{
    return {
        NoFunction,
        typing("digit", "types the digit"),
        typing("Enter", "types Enter"),
        typing("Back", "types Backspace"),
        typing("Plus", "types the arrow up: one more, or the line above"),
        typing("Minus", "types the arrow down: one less, or the line below"),
    };
}

std::vector<KeyFunction> functionFunctions()
{
    return {
        NoFunction,
        {"save device data", "makes the device keep its present state; a box tells the result", "", "",
         "`Green` for a moment"},
        {"lock T-Bar (hold)", "", "for 2 s: locks or unlocks the T-Bar", "",
         "`Green` while held, and while locked"},
        lockKeypad(),
        {"switch source", "", "",
         "changes the secondary screen between the picture of DVI input 0 and the application's own",
         "`Green` the input, `Yellow` the application, `Off` no signal"},
        {"copy layers", "copies the selected layers of the active screen in place", "", "", GreenWhileHeld},
        {"copy and mirror layers", "copies the selected layers of the active screen, mirrored in the mosaic",
         "", "", GreenWhileHeld},
        {"DVI input light"},
    };
}

} // namespace

const std::vector<KeyGroupInfo>& keyGroups()
{
    static const std::vector<KeyGroupInfo> groups{
        {"ScreenCommand", "Screens and program", KeyOrder::Page, screenFunctions()},
        {"LayerCommand", "Layers", KeyOrder::Page, layerFunctions()},
        {"InputCommand", "Inputs", KeyOrder::Page, inputFunctions()},
        {"PresetCommand", "Presets", KeyOrder::Page, presetFunctions()},
        {"NumberCommand", "Keypad", KeyOrder::Digits, numberFunctions()},
        {"FunctionCommand", "Functions", KeyOrder::Group, functionFunctions()},
    };
    return groups;
}

const KeyGroupInfo* findKeyGroup(const QString& name)
{
    const auto& groups = keyGroups();
    const auto found = std::find_if(groups.cbegin(), groups.cend(), [&](const KeyGroupInfo& group) {
        return name == QLatin1String(group.name);
    });
    return found == groups.cend() ? nullptr : &*found;
}

const KeyFunction* findKeyFunction(const QString& groupName, quint16 code)
{
    const KeyGroupInfo* const group = findKeyGroup(groupName);
    return group && code < group->functions.size() ? &group->functions[code] : nullptr;
}

QString keyFunctionName(const QString& groupName, quint16 code)
{
    const KeyFunction* const function = findKeyFunction(groupName, code);
    return function ? QString::fromLatin1(function->name) : QString();
}

} // namespace Orvane::EC
