#include "modelsnapshot_p.h"

#include "bizmodel/device.h"
#include "bizmodel/input.h"
#include "bizmodel/layer.h"
#include "bizmodel/preset.h"
#include "bizmodel/screen.h"

namespace Orvane::ModelTest::Internal {

using namespace BizModel;

namespace {

/// Writes the values of one thing under its name.
class Writer final {
public:
    Writer(ModelSnapshot& snapshot, QString name)
        : m_snapshot(snapshot)
        , m_strName(std::move(name))
    {
    }

    void add(const char* what, const QString& text, const QStringList& announcedBy) const
    {
        m_snapshot.values.insert(m_strName + QLatin1Char(' ') + QLatin1String(what), {text, announcedBy});
    }
    void add(const char* what, bool value, const QStringList& announcedBy) const
    {
        add(what, QString::fromLatin1(value ? "on" : "off"), announcedBy);
    }

private:
    ModelSnapshot& m_snapshot;
    const QString m_strName;
};

QString screenName(const Screen& screen)
{
    return QStringLiteral("screen %1:%2").arg(int(screen.screenType())).arg(screen.screenId());
}

QStringList idsOf(const QList<std::weak_ptr<Layer>>& layers)
{
    QStringList ids;
    for (const std::weak_ptr<Layer>& each : layers) {
        if (const std::shared_ptr<Layer> layer = each.lock())
            ids += QString::number(layer->layerId());
    }
    return ids;
}

void addLayers(ModelSnapshot& snapshot, const Screen& screen, SceneType scene)
{
    const Writer writer(
        snapshot,
        screenName(screen) + (scene == SceneType::PGM ? QStringLiteral(" PGM") : QStringLiteral(" PVW")));
    QStringList sources;
    QStringList windows;
    const auto layers = screen.layers(scene, LayerType::AllLayerType);
    for (const std::weak_ptr<Layer>& each : layers) {
        const std::shared_ptr<Layer> layer = each.lock();
        if (!layer)
            continue;
        sources += QStringLiteral("%1=%2").arg(layer->layerId()).arg(layer->sourceId());
        const QRect window = layer->windowRect();
        windows += QStringLiteral("%1=%2,%3 %4x%5")
                       .arg(layer->layerId())
                       .arg(window.x())
                       .arg(window.y())
                       .arg(window.width())
                       .arg(window.height());
    }
    const QStringList order = idsOf(layers);
    QStringList ids = order;
    QStringList selected = idsOf(screen.selectedLayers(scene));
    for (QStringList* list : {&ids, &sources, &windows, &selected})
        list->sort();
    const QString whole = QStringLiteral("signalDeviceScreenLayersChanged");
    const QString removed = QStringLiteral("signalLayerRemoved");
    writer.add("layers", ids.join(QLatin1Char(' ')), {whole, QStringLiteral("signalLayerAdded"), removed});
    writer.add(
        "sources", sources.join(QLatin1Char(' ')),
        {whole, QStringLiteral("signalLayerSourceChanged"), QStringLiteral("signalLayerAdded"), removed});
    writer.add(
        "selected layers", selected.join(QLatin1Char(' ')),
        {whole, QStringLiteral("signalSelectedLayersChanged"), removed});
    writer.add("order", order.join(QLatin1Char(' ')), {});
    writer.add("windows", windows.join(QLatin1Char(' ')), {});
}

void addScreen(ModelSnapshot& snapshot, const Screen& screen)
{
    const Writer writer(snapshot, screenName(screen));
    writer.add("name", screen.name(), {QStringLiteral("signalScreenNameChanged")});
    writer.add("selected", screen.selected(), {QStringLiteral("signalSelectedRegularScreensChanged")});
    screen.state(); // no signal announces it; asking is what counts
    writer.add("freeze", screen.freeze(), {QStringLiteral("signalScreenPGMFreezeChanged")});
    writer.add("FTB", screen.FTBEnable(), {QStringLiteral("signalScreenFTBChanged")});
    writer.add("PGM edit", screen.PGMEditEnable(), {QStringLiteral("signalScreenPGMEditChanged")});
    writer.add(
        "transition time", QString::number(screen.switchEffectTime()),
        {QStringLiteral("signalScreenEffectChanged")});
    writer.add(
        "place on the console", QString::number(screen.uiScreenIndex()),
        {QStringLiteral("signalScreenIndexChanged")});
    addLayers(snapshot, screen, SceneType::PGM);
    addLayers(snapshot, screen, SceneType::PVW);
}

void addDevice(ModelSnapshot& snapshot, const Device& device)
{
    const QString otherDevice = QStringLiteral("signalActivedDeviceChanged");
    const Writer writer(snapshot, QStringLiteral("device %1").arg(device.ipMacSn()));
    const std::shared_ptr<Screen> active = device.activedScreen().lock();
    writer.add(
        "active screen", active ? screenName(*active) : QString(),
        {QStringLiteral("signalActivedScreenChanged"), otherDevice});
    writer.add("swap", device.swapEnable(), {QStringLiteral("signalSwapStateChanged")});
    writer.add("load to PGM", device.loadToPGMEnable(), {QStringLiteral("signalLoadToPGMStateChanged")});
    writer.add("group", device.groupId(), {QStringLiteral("signalDeviceGroupInfoChanged"), otherDevice});
    writer.add(
        "active preset", QString::number(device.activedPresetKeyNo()),
        {QStringLiteral("signalActivedPresetKeyNoChanged")});
    QStringList presets;
    const auto stored = device.presets();
    for (const std::weak_ptr<Preset>& each : stored) {
        if (const std::shared_ptr<Preset> preset = each.lock())
            presets += QString::number(preset->fileId());
    }
    writer.add(
        "presets", presets.join(QLatin1Char(' ')),
        {QStringLiteral("signalPresetAdded"), QStringLiteral("signalPresetRemoved"),
         QStringLiteral("signalPresetCleared")});
    QStringList screens;
    const auto all = device.screens(Enum::Screen::AllScreenType);
    for (const std::weak_ptr<Screen>& each : all) {
        if (const std::shared_ptr<Screen> screen = each.lock()) {
            screens += screenName(*screen);
            addScreen(snapshot, *screen);
        }
    }
    screens.sort();
    writer.add(
        "screens", screens.join(QLatin1Char(' ')),
        {QStringLiteral("signalScreenAdded"), QStringLiteral("signalScreenRemoved")});
    const auto inputs = device.validInputs();
    for (const std::weak_ptr<Input>& each : inputs) {
        const std::shared_ptr<Input> input = each.lock();
        if (!input)
            continue;
        const Writer of(snapshot, QStringLiteral("input %1").arg(input->interfaceId()));
        of.add("name", input->name(), {QStringLiteral("signalInterfaceNameChanged")});
        of.add("signal", input->isActive(), {QStringLiteral("signalInterfaceSignalChanged")});
        of.add("overload", input->isOverLoad(), {QStringLiteral("signalInterfaceOverLoadChanged")});
    }
}

} // namespace

ModelSnapshot takeSnapshot(const DeviceList& list)
{
    ModelSnapshot snapshot;
    const std::shared_ptr<Device> active = list.activedDevice().lock();
    Writer(snapshot, QStringLiteral("list"))
        .add(
            "active device", active ? active->ipMacSn() : QString(),
            {QStringLiteral("signalActivedDeviceChanged"), QStringLiteral("signalDeviceIPChanged")});
    if (active)
        addDevice(snapshot, *active);
    return snapshot;
}

QStringList differences(const ModelSnapshot& before, const ModelSnapshot& after)
{
    QStringList names;
    for (auto value = after.values.cbegin(); value != after.values.cend(); ++value) {
        const auto former = before.values.constFind(value.key());
        if (former != before.values.cend() && former->text != value->text)
            names += value.key();
    }
    return names;
}

} // namespace Orvane::ModelTest::Internal
