#pragma once

#include "bizmodel/layer.h"
#include "keyboardbuilder.h"
#include "layercommand.h"
#include "modelrig.h"
#include "screencommand.h"

/// The console and the show that the layer tests play with.
namespace LayerScene {

using namespace Orvane;
using namespace Orvane::ECProxy::Client;
using BizModel::CapacityMode;
using BizModel::SceneType;
using MemoryModel::ScreenKey;
using MemoryModel::ScreenType;

/// The keys' numbers on the console.
enum Key : quint16 {
    Select = 20, ///< the first of `SelectCount` select keys; their labels are `Label` further
    PageUp = 30,
    PageDown = 31,
    Remove = 32,
    Clear = 33,
    ToFront = 34,
    ToBack = 35,
    Capacity = 36,
    Full = 37,
    Cut = 40 ///< of the screen group
};
constexpr int SelectCount = 4;
constexpr quint16 Label = 500;

constexpr ScreenKey Stage{ScreenType::RegularScreen, 1};
constexpr ScreenKey Bare{ScreenType::RegularScreen, 2};
constexpr ScreenKey Confidence{ScreenType::AUXScreen, 1};

const QSize Hd(1920, 1080);
const QSize SingleLink(960, 540); ///< what the model gives a single-link layer

inline std::shared_ptr<EC::s_ECKeyboardConfig> keyboard()
{
    using Type = LayerCallbackType;
    const auto code = [](Type type) { return int(type); };
    TestSupport::KeyboardBuilder builder;
    builder.group(QStringLiteral("ScreenCommand")).key(Cut, int(ScreenCallbackType::eCutToPGMCB));
    builder.group(QStringLiteral("LayerCommand")).selectKeys(Select, SelectCount, Label + Select);
    builder.key(PageUp, code(Type::ePageUp), 0, Label + PageUp)
        .key(PageDown, code(Type::ePageDown), 0, Label + PageUp)
        .key(Remove, code(Type::eRemoveSelectedLayerCB))
        .key(Clear, code(Type::eClearLayersCB))
        .key(ToFront, code(Type::eSetSelectedLayerTopZValueCB))
        .key(ToBack, code(Type::eSetSelectedLayerBottomZValueCB))
        .key(Capacity, code(Type::eChangeNewLayerDefaultCapacityCB), 0, Label + Capacity)
        .key(Full, code(Type::eSetSelectedLayerFullScreenCB), 0, Label + Full);
    return builder.build();
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
    device.limits.layers = 64;
    device.subcards = {
        {1,
         0,
         {{1, CapacityMode::_SL},
          {2, CapacityMode::_SL},
          {3, CapacityMode::_SL},
          {4, CapacityMode::_DL},
          {5, CapacityMode::_4K}}},
        {2, 40, {}}};
    device.inputs = {
        {3, QStringLiteral("Camera 3"), 1, 3, CapacityMode::_SL, true, false},
        {1, QStringLiteral("Camera 1"), 1, 1, CapacityMode::_SL, false, false},
        {2, QStringLiteral("Camera 2"), 1, 2, CapacityMode::_SL, true, false},
        {4, QStringLiteral("Graphics"), 1, 4, CapacityMode::_DL, true, false},
        {5, QStringLiteral("Server"), 1, 5, CapacityMode::_4K, false, false}};
    device.outputs = {{1, 2, 1, Hd, true}, {2, 2, 0, Hd, true}, {3, 2, 0, Hd, true}};

    MemoryModel::ScreenRecord stage;
    stage.key = Stage;
    stage.name = QStringLiteral("Stage");
    stage.selected = true;
    stage.effectSeconds = 0.05;
    stage.outputs = {{1, QRect(QPoint(0, 0), Hd)}, {2, QRect(QPoint(1920, 0), Hd)}};
    stage.pvw = preview;
    MemoryModel::ScreenRecord bare;
    bare.key = Bare;
    bare.name = QStringLiteral("Bare");
    MemoryModel::ScreenRecord confidence;
    confidence.key = Confidence;
    confidence.name = QStringLiteral("Confidence");
    confidence.outputs = {{3, QRect(QPoint(0, 0), Hd)}};
    device.screens = {stage, bare, confidence};
    device.activeScreen = Stage;
    return {device.ipMacSn, {device}};
}

} // namespace LayerScene
