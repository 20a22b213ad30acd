#pragma once

#include "ec/eckeyfunctions.h"
#include "functioncommand.h"
#include "inputcommand.h"
#include "keyboardbuilder.h"
#include "keytable_p.h"
#include "layercommand.h"
#include "modelrig.h"
#include "numbercommand.h"
#include "presetcommand.h"
#include "screencommand.h"

#include <vector>

/// A console that has one key for each row of the key tables, and a show that it works on.
namespace EveryKey {

using namespace Orvane;
using namespace Orvane::ECProxy::Client;

struct Key {
    quint16 ecKey;
    QString group;
    Internal::BoundKeyRow row; ///< its handlers are of a command that is gone
};

/// Labels are this much further than their keys.
constexpr quint16 Label = 500;
const QString Device = QStringLiteral("A");
constexpr MemoryModel::ScreenKey Stage{MemoryModel::ScreenType::RegularScreen, 1};

template <typename OneCommand> void addKeys(std::vector<Key>& keys)
{
    const OneCommand command;
    for (const auto& row : command.keyTable().rows())
        keys.push_back({quint16(keys.size() + 1), command.name(), row});
}

inline const std::vector<Key>& keys()
{
    static const std::vector<Key> s_keys = [] {
        std::vector<Key> keys;
        addKeys<ScreenCommand>(keys);
        addKeys<LayerCommand>(keys);
        addKeys<InputCommand>(keys);
        addKeys<PresetCommand>(keys);
        addKeys<NumberCommand>(keys);
        addKeys<FunctionCommand>(keys);
        return keys;
    }();
    return s_keys;
}

/// What the key does, as an operator calls it.
inline QString functionOf(const Key& key)
{
    return EC::keyFunctionName(key.group, key.row.code);
}

/// The key that does that.
inline quint16 keyOf(const char* group, const char* function)
{
    for (const Key& key : keys()) {
        if (key.group == QLatin1String(group) && functionOf(key) == QLatin1String(function))
            return key.ecKey;
    }
    qFatal("%s has no key that does this: %s", group, function);
}

inline std::shared_ptr<EC::s_ECKeyboardConfig> keyboard()
{
    TestSupport::KeyboardBuilder builder;
    QString group;
    for (const Key& key : keys()) {
        if (key.group != group)
            builder.group(group = key.group);
        builder.key(key.ecKey, key.row.code, 0, key.ecKey + Label);
    }
    return builder.build();
}

/// Device "A" with the screen "Stage", which has room for few layers and a selected one, and one input.
inline MemoryModel::ShowRecord show()
{
    MemoryModel::DeviceRecord device;
    device.ipMacSn = Device;
    device.groupId = BizModel::Device::defaultDeviceGroupId;
    device.subcards = {{1, 4, {{1, BizModel::CapacityMode::_SL}}}};
    device.inputs = {{1, "Camera", 1, 1, BizModel::CapacityMode::_SL, true, false}};
    device.outputs = {{1, 1, 0, QSize(1920, 1080), true}};
    MemoryModel::LayerRecord layer;
    layer.id = 1;
    layer.name = "Layer 1";
    layer.inputId = 1;
    layer.window = QRect(0, 0, 480, 270);
    layer.selected = true;
    MemoryModel::ScreenRecord stage;
    stage.key = device.activeScreen = Stage;
    stage.name = "Stage";
    stage.selected = true;
    stage.uiScreenIndex = 0;
    stage.effectSeconds = 0.05;
    stage.outputs = {{1, QRect(0, 0, 1920, 1080)}};
    stage.pvw = {layer};
    device.screens = {stage};
    return {Device, {device}};
}

} // namespace EveryKey
