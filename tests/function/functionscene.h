#pragma once

#include "functioncommand.h"
#include "keyboardbuilder.h"
#include "modelrig.h"

/// The console and the show that the function tests play with.
namespace FunctionScene {

using namespace Orvane;
using namespace Orvane::ECProxy::Client;
using MemoryModel::ScreenKey;
using MemoryModel::ScreenType;

/// The keys' numbers on the console.
enum Key : quint16 { Save = 1, TBarLock, KeypadLock, Mvr, Copy, MirrorCopy, DviLight, Digit = 20 };

constexpr ScreenKey Stage{ScreenType::RegularScreen, 1};

inline std::shared_ptr<EC::s_ECKeyboardConfig> keyboard()
{
    TestSupport::KeyboardBuilder builder;
    builder.group("NumberCommand").selectKeys(Digit, 1);
    builder.group("FunctionCommand");
    for (quint16 key = Save; key <= DviLight; ++key)
        builder.key(key, key, quint16(key - Save)); // codes count like the numbers
    return builder.build();
}

inline MemoryModel::LayerRecord layerRecord(quint32 id, const QRect& window, bool selected)
{
    MemoryModel::LayerRecord layer;
    layer.id = id;
    layer.name = QString("Layer %1").arg(id);
    layer.window = window;
    layer.selected = selected;
    return layer;
}

/// Device "A" with one screen of 1920 pixels on a card for four layers. Its preview has a selected layer at
/// the left edge and one that is not selected.
inline MemoryModel::ShowRecord show()
{
    MemoryModel::DeviceRecord a;
    a.ipMacSn = "A";
    a.groupId = BizModel::Device::defaultDeviceGroupId;
    a.subcards = {{1, 4, {}}};
    a.outputs = {{1, 1, 0, QSize(1920, 1080), true}};
    MemoryModel::ScreenRecord stage;
    stage.key = Stage;
    stage.name = "Stage";
    stage.selected = true;
    stage.outputs = {{1, QRect(0, 0, 1920, 1080)}};
    stage.pvw = {
        layerRecord(1, QRect(0, 100, 480, 270), true), layerRecord(2, QRect(960, 0, 480, 270), false)};
    a.screens = {stage};
    a.activeScreen = Stage;
    return {"A", {a}};
}

} // namespace FunctionScene
