#include "showfile.h"

#include "bizmodel/device.h"
#include "jsontext_p.h"
#include "showarchive.h"
#include "showcheck.h"

#include <QJsonDocument>
#include <QSaveFile>

namespace Orvane::MemoryModel {

using BizModel::CapacityMode;
using BizModel::EffectType;
using BizModel::LayerType;

namespace {

constexpr qint64 MaxId = 0xFFFFFFFF;
constexpr qint64 MaxCount = 100'000;

const Words<CapacityMode> capacities = {
    {CapacityMode::_SL, "SL"}, {CapacityMode::_DL, "DL"}, {CapacityMode::_4K, "4K"}};
const Words<ScreenType> screenTypes = {
    {ScreenType::RegularScreen, "regular"}, {ScreenType::AUXScreen, "AUX"}};
const Words<LayerType> layerTypes = {
    {LayerType::Regular, "regular"}, {LayerType::AUX, "AUX"}, {LayerType::Image, "image"}};
const Words<EffectType> effectTypes = {{EffectType::cut, "cut"}, {EffectType::fade, "fade"}};
const Words<FileType> presetTypes = {{FileType::PresetPVW, "PVW"}, {FileType::PresetPGM, "PGM"}};

// Each description is read with a ShowReader and written with a ShowWriter.

template <typename Archive> void describeKey(Archive& archive, ScreenKey& key)
{
    archive.word("type", key.type, screenTypes, Presence::Required);
    archive.integer("id", key.id, 1, MaxId, Presence::Required);
}

struct DescribeLayer {
    template <typename Archive> void operator()(Archive& archive, LayerRecord& layer) const
    {
        archive.integer("id", layer.id, 1, MaxId, Presence::Required);
        archive.text("name", layer.name);
        archive.word("type", layer.type, layerTypes);
        archive.integer("input", layer.inputId, 0, MaxId);
        archive.rect("window", layer.window);
        archive.word("capacity", layer.capacity, capacities);
        archive.flag("selected", layer.selected);
    }
};

struct DescribeScreenOutput {
    template <typename Archive> void operator()(Archive& archive, ScreenOutputRecord& output) const
    {
        archive.integer("output", output.outputId, 1, MaxId, Presence::Required);
        archive.rect("rect", output.rect);
    }
};

struct DescribeScreen {
    template <typename Archive> void operator()(Archive& archive, ScreenRecord& screen) const
    {
        describeKey(archive, screen.key);
        archive.text("name", screen.name);
        archive.integer("uiScreenIndex", screen.uiScreenIndex, -1, MaxScreenIndex);
        archive.flag("selected", screen.selected);
        archive.flag("freeze", screen.freeze);
        archive.flag("ftb", screen.fadeToBlack);
        archive.flag("pgmEdit", screen.pgmEdit);
        archive.word("effect", screen.effectType, effectTypes);
        archive.number("effectSeconds", screen.effectSeconds, 0.0, MaxEffectSeconds);
        archive.list("outputs", screen.outputs, DescribeScreenOutput());
        archive.list("pgm", screen.pgm, DescribeLayer());
        archive.list("pvw", screen.pvw, DescribeLayer());
    }
};

struct DescribeConnector {
    template <typename Archive> void operator()(Archive& archive, ConnectorRecord& connector) const
    {
        archive.integer("id", connector.id, 1, MaxId, Presence::Required);
        archive.word("capacity", connector.capacity, capacities, Presence::Required);
    }
};

struct DescribeSubcard {
    template <typename Archive> void operator()(Archive& archive, SubcardRecord& card) const
    {
        archive.integer("id", card.id, 1, MaxId, Presence::Required);
        archive.integer("layerCapacity", card.layerCapacity, 0, MaxCount, Presence::Required);
        archive.list("connectors", card.connectors, DescribeConnector());
    }
};

struct DescribeInput {
    template <typename Archive> void operator()(Archive& archive, InputRecord& input) const
    {
        archive.integer("id", input.id, 1, MaxId, Presence::Required);
        archive.text("name", input.name);
        archive.integer("subcard", input.subcardId, 1, MaxId, Presence::Required);
        archive.integer("connector", input.connectorId, 1, MaxId, Presence::Required);
        archive.word("capacity", input.capacity, capacities);
        archive.flag("signal", input.signal);
        archive.flag("overload", input.overload);
    }
};

struct DescribeOutput {
    template <typename Archive> void operator()(Archive& archive, OutputRecord& output) const
    {
        archive.integer("id", output.id, 1, MaxId, Presence::Required);
        archive.integer("subcard", output.subcardId, 1, MaxId, Presence::Required);
        archive.integer("zOrder", output.zOrder, -MaxCount, MaxCount);
        archive.size("size", output.size);
        archive.flag("online", output.online);
    }
};

struct DescribePresetScreen {
    template <typename Archive> void operator()(Archive& archive, PresetScreenRecord& screen) const
    {
        describeKey(archive, screen.key);
        archive.list("layers", screen.layers, DescribeLayer());
    }
};

struct DescribePreset {
    template <typename Archive> void operator()(Archive& archive, PresetRecord& preset) const
    {
        archive.word("type", preset.type, presetTypes, Presence::Required);
        archive.integer("id", preset.id, 1, MaxPresetCount, Presence::Required);
        archive.text("name", preset.name);
        archive.list("screens", preset.screens, DescribePresetScreen());
    }
};

struct DescribeKey {
    template <typename Archive> void operator()(Archive& archive, ProtoModel::File::s_KeypadFile& key) const
    {
        archive.integer("modelId", key.modelId, 0, 255);
        archive.integer("modelType", key.modelType, 0, 255);
        archive.integer("buttonId", key.buttonId, 0, 255, Presence::Required);
        archive.integer("buttonColor", key.buttonColor, 0, 255, Presence::Required);
    }
};

template <typename Archive> void describeKeypad(Archive& archive, ProtoModel::File::s_KeypadInfo& keypad)
{
    ProtoModel::File::s_PresetInfo& info = keypad.presetInfo;
    archive.integer("beforeOnePreset", info.beforeOnePreset, 0, MaxPresetCount);
    archive.integer("lastPVWPreset", info.lastPVWPreset, 0, MaxPresetCount);
    archive.integer("lastPGMPreset", info.lastPGMPreset, 0, MaxPresetCount);
    archive.numbers("pvwScreens", info.pvwScn);
    archive.numbers("pgmScreens", info.pgmScn);
    QList<ProtoModel::File::s_KeypadFile> keys = keypad.keypadArray.toList();
    archive.list("keys", keys, DescribeKey());
    keypad.keypadArray = keys.toVector();
}

struct DescribeDevice {
    template <typename Archive> void operator()(Archive& archive, DeviceRecord& device) const
    {
        archive.text("ipMacSn", device.ipMacSn, Presence::Required);
        archive.text("group", device.groupId);
        archive.flag("online", device.online);
        archive.flag("multiScreens", device.multiScreens);
        archive.flag("consolePlugin", device.consolePlugin);
        archive.flag("loadToPGMEnabled", device.loadToPGMEnabled);
        archive.flag("loadToPGM", device.loadToPGM);
        archive.flag("swap", device.swap);
        archive.integer("maxPresetCount", device.maxPresetCount, 0, MaxPresetCount);
        bool limited = true;
        archive.object("limits", limited, [&device](auto& limits) {
            limits.integer("regularScreens", device.limits.regularScreens, 0, MaxCount);
            limits.integer("auxScreens", device.limits.auxScreens, 0, MaxCount);
            limits.integer("layers", device.limits.layers, 0, MaxCount);
        });
        archive.list("subcards", device.subcards, DescribeSubcard());
        archive.list("inputs", device.inputs, DescribeInput());
        archive.list("outputs", device.outputs, DescribeOutput());
        archive.list("screens", device.screens, DescribeScreen());
        bool active = device.activeScreen.id != 0;
        archive.object(
            "activeScreen", active, [&device](auto& key) { describeKey(key, device.activeScreen); });
        archive.list("presets", device.presets, DescribePreset());
        archive.integer("activePreset", device.activePreset, 0, MaxPresetCount);
        archive.object(
            "keypad", device.hasKeypad, [&device](auto& keypad) { describeKeypad(keypad, device.keypad); });
    }
};

template <typename Archive> void describeShow(Archive& archive, ShowRecord& show)
{
    archive.text("activeDevice", show.activeDevice);
    archive.list("devices", show.devices, DescribeDevice());
}

} // namespace

std::optional<ShowRecord> parseShow(const QByteArray& json, QStringList& faults)
{
    faults.clear();
    QList<Internal::TextFault> textFaults;
    const auto root = Internal::parseJson(json, textFaults);
    for (const Internal::TextFault& fault : qAsConst(textFaults))
        faults += fault.place + QStringLiteral(": ") + fault.text;
    if (!root)
        return std::nullopt;
    ShowRecord show;
    {
        ShowReader reader(*root, QString(), faults);
        describeShow(reader, show);
    }
    for (DeviceRecord& device : show.devices) {
        if (device.groupId.isEmpty())
            device.groupId = BizModel::Device::defaultDeviceGroupId;
    }
    checkShow(show, faults);
    if (!faults.isEmpty())
        return std::nullopt;
    return show;
}

QByteArray writeShow(const ShowRecord& show)
{
    // The descriptions serve both directions, so they take what they could also fill.
    ShowRecord copy = show;
    ShowWriter writer;
    describeShow(writer, copy);
    return QJsonDocument(writer.result()).toJson();
}

std::optional<ShowRecord> loadShowFile(const QString& path, QStringList& faults)
{
    faults.clear();
    QString fault;
    const auto json = Internal::readFile(path, MaxShowFileBytes, QStringLiteral("a show file"), fault);
    if (json)
        return parseShow(*json, faults);
    faults += path + QStringLiteral(": ") + fault;
    return std::nullopt;
}

bool saveShowFile(const QString& path, const ShowRecord& show, QString& error)
{
    QSaveFile file(path);
    const QByteArray json = writeShow(show);
    if (!file.open(QIODevice::WriteOnly) || file.write(json) != json.size() || !file.commit()) {
        error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

} // namespace Orvane::MemoryModel
