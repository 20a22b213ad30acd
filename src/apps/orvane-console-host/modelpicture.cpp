#include "modelpicture.h"

#include "bizmodel/device.h"
#include "bizmodel/input.h"
#include "bizmodel/layer.h"
#include "enumwords_p.h"
#include "memorydevicelist.h"
#include "memorymodel.h"

#include <QJsonArray>

#include <algorithm>

namespace Orvane::ConsoleHost {

using BizModel::Device;
using BizModel::Screen;
using MemoryModel::ScreenKey;
using MemoryModel::ScreenType;

namespace {

const QString RegularName = QStringLiteral("regular");
const QString AUXName = QStringLiteral("AUX");

QList<LayerPicture> pictureLayers(const Device& device, const Screen& screen, BizModel::SceneType scene)
{
    QList<LayerPicture> pictures;
    const auto layers = screen.layers(scene, BizModel::LayerType::AllLayerType);
    for (const auto& reference : layers) {
        const auto layer = reference.lock();
        if (!layer)
            continue;
        LayerPicture picture;
        picture.id = layer->layerId();
        picture.name = layer->name();
        picture.sourceId = layer->sourceId();
        if (const auto input = device.findInput(picture.sourceId).lock())
            picture.sourceName = input->name();
        picture.window = layer->windowRect();
        pictures.append(picture);
    }
    const auto selected = screen.selectedLayers(scene);
    for (const auto& reference : selected) {
        const auto layer = reference.lock();
        for (LayerPicture& picture : pictures)
            picture.isSelected = picture.isSelected || (layer && picture.id == layer->layerId());
    }
    return pictures;
}

ScreenPicture pictureScreen(const Device& device, const Screen& screen)
{
    ScreenPicture picture;
    picture.key = {screen.screenType(), screen.screenId()};
    picture.name = screen.name();
    picture.state = screen.state();
    picture.isSelected = screen.selected();
    picture.isFrozen = screen.freeze();
    picture.isFadedToBlack = screen.FTBEnable();
    picture.isProgramEdited = screen.PGMEditEnable();
    picture.effectSeconds = screen.switchEffectTime();
    picture.mosaic = screen.mosaicWindowRect();
    const auto outputs = screen.outputs();
    for (const auto& output : outputs)
        picture.outputs.append(screen.mosaicRect(output));
    picture.program = pictureLayers(device, screen, BizModel::SceneType::PGM);
    picture.preview = pictureLayers(device, screen, BizModel::SceneType::PVW);
    return picture;
}

template <typename Picture> void sortById(QList<Picture>& pictures)
{
    std::stable_sort(
        pictures.begin(), pictures.end(), [](const Picture& a, const Picture& b) { return a.id < b.id; });
}

QList<InputPicture> pictureInputs(const Device& device, quint32 markedInput)
{
    QList<InputPicture> pictures;
    const auto inputs = device.validInputs();
    for (const auto& reference : inputs) {
        if (const auto input = reference.lock()) {
            pictures.append(
                {input->interfaceId(), input->name(), input->capacity(), input->isActive(),
                 input->isOverLoad(), input->interfaceId() == markedInput});
        }
    }
    sortById(pictures);
    return pictures;
}

/// The keys of the console show the presets of the whole group.
QList<PresetPicture> picturePresets(
    const BizModel::DeviceList& devices, const std::shared_ptr<Device>& device)
{
    QList<PresetPicture> pictures;
    const auto members = devices.groupDevices(device, true, false);
    for (const auto& reference : members) {
        const auto member = reference.lock();
        const auto active = member ? member->activedPreset().lock() : nullptr;
        const auto presets = member ? member->presets() : decltype(member->presets())();
        for (const auto& one : presets) {
            if (const auto preset = one.lock())
                pictures.append(
                    {preset->fileId(), member->ipMacSn(), preset->name(), preset->fileType(),
                     preset == active});
        }
    }
    sortById(pictures);
    return pictures;
}

QJsonObject toJson(const LayerPicture& layer)
{
    return {
        {QStringLiteral("id"), qint64(layer.id)},
        {QStringLiteral("name"), layer.name},
        {QStringLiteral("input"), qint64(layer.sourceId)},
        {QStringLiteral("inputName"), layer.sourceName},
        {QStringLiteral("window"),
         QJsonArray{layer.window.x(), layer.window.y(), layer.window.width(), layer.window.height()}},
        {QStringLiteral("selected"), layer.isSelected}};
}

QJsonArray toJson(const QList<LayerPicture>& layers)
{
    QJsonArray array;
    for (const LayerPicture& layer : layers)
        array.append(toJson(layer));
    return array;
}

QJsonObject toJson(const ScreenPicture& screen)
{
    return {
        {QStringLiteral("screen"), screenName(screen.key)},
        {QStringLiteral("name"), screen.name},
        {QStringLiteral("state"), Internal::wordOf(screen.state)},
        {QStringLiteral("active"), screen.isActive},
        {QStringLiteral("selected"), screen.isSelected},
        {QStringLiteral("freeze"), screen.isFrozen},
        {QStringLiteral("ftb"), screen.isFadedToBlack},
        {QStringLiteral("pgmEdit"), screen.isProgramEdited},
        {QStringLiteral("effectSeconds"), screen.effectSeconds},
        {QStringLiteral("progress"), screen.progress},
        {QStringLiteral("outputs"), screen.outputs.size()},
        {QStringLiteral("pgm"), toJson(screen.program)},
        {QStringLiteral("pvw"), toJson(screen.preview)}};
}

} // namespace

DevicePicture pictureActiveDevice(MemoryModel::MemoryModel& model)
{
    DevicePicture picture;
    picture.presetMode = model.deviceList().presetOperateMode();
    const auto device = model.deviceList().activedDevice().lock();
    if (!device)
        return picture;
    picture.identity = device->ipMacSn();
    picture.isOnline = device->onlineFlag();
    picture.isSwapEnabled = device->swapEnable();
    picture.loadsToProgram = device->loadToPGMEnable();
    picture.inputs = pictureInputs(*device, model.control().selectedInput(picture.identity));
    picture.presets = picturePresets(model.deviceList(), device);
    const auto active = device->activedScreen().lock();
    const auto screens = device->screens(BizModel::Enum::Screen::RegularAndAUXScreens);
    for (const auto& reference : screens) {
        const auto screen = reference.lock();
        if (!screen)
            continue;
        ScreenPicture shown = pictureScreen(*device, *screen);
        shown.isActive = screen == active;
        shown.progress = model.control().transitionProgress(picture.identity, shown.key);
        picture.screens.append(shown);
    }
    return picture;
}

QString screenName(const ScreenKey& key)
{
    return QStringLiteral("%1:%2").arg(key.type == ScreenType::AUXScreen ? AUXName : RegularName).arg(key.id);
}

ScreenKey screenOfName(const QString& name)
{
    const int colon = name.indexOf(QLatin1Char(':'));
    const QString type = name.left(colon);
    ScreenKey key;
    if (type == AUXName)
        key.type = ScreenType::AUXScreen;
    else if (type != RegularName)
        return {};
    key.id = name.mid(colon + 1).toUInt();
    return key;
}

QStringList presetModeNames() // in the order of Preset::PresetOptMode
{
    return {
        QStringLiteral("none"), QStringLiteral("select"), QStringLiteral("clear"), QStringLiteral("clearAll"),
        QStringLiteral("save")};
}

QJsonObject screensToJson(const DevicePicture& device)
{
    QJsonArray screens;
    for (const ScreenPicture& screen : device.screens)
        screens.append(toJson(screen));
    return {
        {QStringLiteral("device"), device.identity},
        {QStringLiteral("online"), device.isOnline},
        {QStringLiteral("swap"), device.isSwapEnabled},
        {QStringLiteral("screens"), screens}};
}

QJsonObject inputsToJson(const DevicePicture& device)
{
    QJsonArray inputs;
    for (const InputPicture& input : device.inputs) {
        inputs.append(QJsonObject{
            {QStringLiteral("input"), qint64(input.id)},
            {QStringLiteral("name"), input.name},
            {QStringLiteral("capacity"), Internal::wordOf(input.capacity)},
            {QStringLiteral("signal"), input.hasSignal},
            {QStringLiteral("overload"), input.isOverloaded},
            {QStringLiteral("marked"), input.isMarked}});
    }
    return {{QStringLiteral("inputs"), inputs}};
}

QJsonObject presetsToJson(const DevicePicture& device)
{
    QJsonArray presets;
    for (const PresetPicture& preset : device.presets) {
        presets.append(QJsonObject{
            {QStringLiteral("slot"), preset.id},
            {QStringLiteral("device"), preset.device},
            {QStringLiteral("name"), preset.name},
            {QStringLiteral("type"),
             preset.type == BizModel::File::FileType::PresetPGM ? QStringLiteral("PGM")
                                                                : QStringLiteral("PVW")},
            {QStringLiteral("active"), preset.isActive}});
    }
    return {
        {QStringLiteral("mode"), presetModeNames().value(device.presetMode)},
        {QStringLiteral("loadToPGM"), device.loadsToProgram},
        {QStringLiteral("presets"), presets}};
}

} // namespace Orvane::ConsoleHost
