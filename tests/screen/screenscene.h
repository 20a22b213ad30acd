#pragma once

#include "keyboardbuilder.h"
#include "modelrig.h"
#include "screencommand.h"

#include "bizmodel/layer.h"

/// The console and the show that the screen tests play with.
namespace ScreenScene {

using namespace Orvane;
using namespace Orvane::ECProxy::Client;
using MemoryModel::ScreenKey;
using MemoryModel::ScreenType;

/// The keys' numbers on the console.
enum Key : quint16 {
    Select = 1, ///< the first of `SelectCount` select keys; their labels are `Label` further
    PageUp = 10,
    PageDown = 11,
    Freeze = 12,
    Match = 13,
    FTB = 14,
    Cut = 15,
    Take = 16,
    Mix = 17,
    TimeUp = 18,
    Swap = 19,
    Edit = 20,
    TimeDown = 21
};
constexpr int SelectCount = 4;
constexpr quint16 Label = 100;

constexpr ScreenKey Stage{ScreenType::RegularScreen, 1};
constexpr ScreenKey Side{ScreenType::RegularScreen, 2};
constexpr ScreenKey Confidence{ScreenType::AUXScreen, 1};

inline std::shared_ptr<EC::s_ECKeyboardConfig> keyboard()
{
    TestSupport::KeyboardBuilder builder;
    const auto code = [](ScreenCallbackType type) { return int(type); };
    using Type = ScreenCallbackType;
    builder.group(QStringLiteral("ScreenCommand")).selectKeys(Select, SelectCount, Label + Select);
    builder.key(PageUp, code(Type::ePageUp), 0, Label + PageUp)
        .key(PageDown, code(Type::ePageDown), 0, Label + PageUp)
        .key(Freeze, code(Type::eFreezePGMCB))
        .key(Match, code(Type::eMatchPGMCB))
        .key(FTB, code(Type::eFTBPGMCB))
        .key(Cut, code(Type::eCutToPGMCB))
        .key(Take, code(Type::eTakeToPGMCB))
        .key(Mix, code(Type::eSetTransitionMixTypeCB), 0, Label + Mix)
        .key(TimeUp, code(Type::eSetTransitionTimeCB), 0, Label + TimeUp)
        .key(Swap, code(Type::eSetSwapStatusCB))
        .key(Edit, code(Type::eSetPGMEdit))
        .key(TimeDown, code(Type::eSetTransitionTimeReduceCB), 0, Label + TimeDown);
    return builder.build();
}

inline MemoryModel::ScreenRecord screenRecord(ScreenKey key, const QString& name, int uiScreenIndex)
{
    MemoryModel::LayerRecord layer;
    layer.id = 1;
    layer.type = key.type == ScreenType::AUXScreen ? BizModel::LayerType::AUX : BizModel::LayerType::Regular;
    layer.window = QRect(0, 0, 960, 540);
    MemoryModel::ScreenRecord screen;
    screen.key = key;
    screen.name = name;
    screen.uiScreenIndex = uiScreenIndex;
    screen.effectSeconds = 0.1;
    layer.name = QStringLiteral("next");
    screen.pvw = {layer};
    layer.name = QStringLiteral("present");
    screen.pgm = {layer};
    return screen;
}

/// Device "A" with the screens Stage (on key 1, selected, active), Side (on key 2) and the AUX screen
/// Confidence (on key 3), and outputs left over; device "B", not active, with one selected screen. Each is
/// alone, several screens may be selected at once, take copies.
inline MemoryModel::ShowRecord show()
{
    MemoryModel::DeviceRecord device;
    device.groupId = BizModel::Device::defaultDeviceGroupId;
    device.multiScreens = true;
    device.limits.regularScreens = 24;
    device.subcards = {{1, 64, {}}};
    for (quint32 id = 1; id <= 8; ++id)
        device.outputs.append({id, 1, int(id), QSize(1920, 1080), true});
    const auto withOutput = [](MemoryModel::ScreenRecord screen, quint32 outputId) {
        screen.outputs = {{outputId, QRect(0, 0, 1920, 1080)}};
        return screen;
    };

    MemoryModel::DeviceRecord a = device;
    a.ipMacSn = QStringLiteral("A");
    a.screens = {
        withOutput(screenRecord(Stage, QStringLiteral("Stage"), 0), 1),
        withOutput(screenRecord(Side, QStringLiteral("Side"), 1), 2),
        withOutput(screenRecord(Confidence, QStringLiteral("Confidence"), 2), 3)};
    a.screens[0].selected = true;
    a.activeScreen = Stage;

    MemoryModel::DeviceRecord b = device;
    b.ipMacSn = QStringLiteral("B");
    b.screens = {withOutput(screenRecord(Stage, QStringLiteral("Hall"), 0), 1)};
    b.screens[0].selected = true;
    b.activeScreen = Stage;
    return {QStringLiteral("A"), {a, b}};
}

/// Names of the layers of one scene.
inline QStringList layerNames(const std::shared_ptr<BizModel::Screen>& screen, BizModel::SceneType scene)
{
    QStringList names;
    const auto layers = screen->layers(scene, BizModel::LayerType::AllLayerType);
    for (const auto& weakLayer : layers) {
        if (const auto layer = weakLayer.lock())
            names.append(layer->name());
    }
    return names;
}

} // namespace ScreenScene
