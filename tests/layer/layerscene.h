#pragma once

#include "bizmodel/layer.h"
#include "keyboardbuilder.h"
#include "modelrig.h"

/// The console and the show that the layer tests play with.
namespace LayerScene {

using namespace Orvane;
using namespace Orvane::ECProxy::Client;
using BizModel::CapacityMode;
using BizModel::SceneType;
using MemoryModel::ScreenKey;
using MemoryModel::ScreenType;

/// The first of the select keys and how many there are.
constexpr quint16 Select = 20;
constexpr int SelectCount = 4;
/// The other keys' numbers on the console; the last is of the screen group. Clear and capacity have two keys.
enum Key : quint16 {
    PageUp = 30,
    PageDown,
    Remove,
    Clear,
    ToFront,
    ToBack,
    Capacity,
    Full,
    OtherClear,
    OtherCapacity,
    Cut
};
/// Labels are this much further than their keys.
constexpr quint16 Label = 500;

constexpr ScreenKey Stage{ScreenType::RegularScreen, 1};
constexpr ScreenKey Bare{ScreenType::RegularScreen, 2};
constexpr ScreenKey Confidence{ScreenType::AUXScreen, 1};

const QSize Hd(1920, 1080);
const QSize SingleLink(960, 540); ///< what the model gives a single-link layer

inline std::shared_ptr<EC::s_ECKeyboardConfig> keyboard()
{
    TestSupport::KeyboardBuilder builder;
    builder.group("ScreenCommand").key(Cut, 7);
    builder.group("LayerCommand").selectKeys(Select, SelectCount, Label + Select);
    builder.key(PageUp, 2, 0, Label + PageUp).key(PageDown, 3, 0, Label + PageUp);
    for (const quint16 key : {Remove, Clear, ToFront, ToBack})
        builder.key(key, 4 + key - Remove); // the function codes count like the keys
    builder.key(Capacity, 8, 0, Label + Capacity).key(Full, 9, 0, Label + Full);
    return builder.key(OtherClear, 5).key(OtherCapacity, 8, 0, Label + OtherCapacity).build();
}

inline MemoryModel::LayerRecord layerRecord(quint32 id, const QPoint& position = {0, 0})
{
    MemoryModel::LayerRecord layer;
    layer.id = id;
    layer.name = QStringLiteral("Layer %1").arg(id);
    layer.inputId = 2;
    layer.window = QRect(position, SingleLink);
    return layer;
}

inline MemoryModel::LayerRecord selectedLayer(quint32 id, const QPoint& position = {0, 0})
{
    auto layer = layerRecord(id, position);
    layer.selected = true;
    return layer;
}

/// One device, with the active screen Stage on two outputs, the second of which comes first in z-order; the
/// screen Bare without an output; the AUX screen Confidence. Of the inputs, 1 (SL) has no signal, 2 and 3 are
/// SL, 4 is DL, 5 (4K) has no signal. Every call makes another device, for a device's keys are remembered.
inline MemoryModel::ShowRecord show(const MemoryModel::LayerRecords& preview = {})
{
    static int s_count = 0;
    MemoryModel::DeviceRecord device;
    device.ipMacSn = QStringLiteral("device %1").arg(++s_count);
    device.groupId = BizModel::Device::defaultDeviceGroupId;
    device.multiScreens = true;
    const auto SL = CapacityMode::_SL, DL = CapacityMode::_DL, UHD = CapacityMode::_4K;
    device.subcards = {{1, 0, {{1, SL}, {2, SL}, {3, SL}, {4, DL}, {5, UHD}}}, {2, 40, {}}};
    device.inputs = {
        {3, "Camera 3", 1, 3, SL, true, false},
        {1, "Camera 1", 1, 1, SL, false, false},
        {2, "Camera 2", 1, 2, SL, true, false},
        {4, "Graphics", 1, 4, DL, true, false},
        {5, "Server", 1, 5, UHD, false, false}};
    device.outputs = {{1, 2, 1, Hd, true}, {2, 2, 0, Hd, true}, {3, 2, 0, Hd, true}};

    MemoryModel::ScreenRecord stage, bare, confidence;
    stage.key = device.activeScreen = Stage;
    stage.name = "Stage";
    stage.selected = true;
    stage.effectSeconds = 0.05;
    stage.outputs = {{1, QRect(QPoint(0, 0), Hd)}, {2, QRect(QPoint(1920, 0), Hd)}};
    stage.pvw = preview;
    bare.key = Bare;
    bare.name = "Bare";
    confidence.key = Confidence;
    confidence.name = "Confidence";
    confidence.outputs = {{3, QRect(QPoint(0, 0), Hd)}};
    device.screens = {stage, bare, confidence};
    return {device.ipMacSn, {device}};
}

} // namespace LayerScene
