#pragma once

#include "keyboardbuilder.h"
#include "memorydevicelist.h"
#include "modelrig.h"
#include "presetcommand.h"
#include "screencommand.h"

#include "bizmodel/preset.h"
#include "ecmanager.h"
#include "parallelcontrol/parallelmanager.h"

#include <QTest>
#include <QThreadPool>

#include <algorithm>

/// The console and the show that the preset tests play with.
namespace PresetScene {

using namespace Orvane;
using namespace Orvane::ECProxy::Client;
using BizModel::Enum::Preset::PresetOptMode;
using MemoryModel::FileType;
using MemoryModel::Operation;
using MemoryModel::ScreenKey;
using MemoryModel::ScreenType;
using MemoryModel::Times;

/// The keys' numbers on the console; from `Preset` on there are `PageSize` preset keys, with their labels
/// `Label` further.
enum PresetKey : quint16 { Preset = 1, PageUp = 20, PageDown, Remove, ClearAll, Store, LoadTarget };
enum TransitionKey : quint16 { Take = 40, Cut };
/// Does not divide the highest number of presets, 128.
constexpr int PageSize = 10;
constexpr quint16 Label = 100;

constexpr ScreenKey Stage{ScreenType::RegularScreen, 1};

inline const QString A = "A";
inline const QString B = "B";

inline std::shared_ptr<EC::s_ECKeyboardConfig> keyboard()
{
    TestSupport::KeyboardBuilder builder;
    builder.group("ScreenCommand")
        .key(Take, int(ScreenCallbackType::eTakeToPGMCB))
        .key(Cut, int(ScreenCallbackType::eCutToPGMCB));
    builder.group("PresetCommand")
        .selectKeys(Preset, PageSize, Label + Preset)
        .key(PageUp, int(PresetCallbackType::ePageUp), 0, Label + PageUp)
        .key(PageDown, int(PresetCallbackType::ePageDown), 0, Label + PageUp)
        .key(Remove, int(PresetCallbackType::eRemoveSelectedPresetCB))
        .key(ClearAll, int(PresetCallbackType::eClearPresetsCB))
        .key(Store, int(PresetCallbackType::eSavePresetCB))
        .key(LoadTarget, int(PresetCallbackType::eLoadToPgm), 0, Label + LoadTarget);
    return builder.build();
}

/// The key of a slot on its page.
constexpr quint16 keyOf(int slot)
{
    return quint16(Preset + slot % PageSize);
}

inline MemoryModel::LayerRecord layerRecord(const QString& name)
{
    MemoryModel::LayerRecord layer;
    layer.id = 1;
    layer.name = name;
    layer.window = QRect(0, 0, 960, 540);
    return layer;
}

/// A preset that puts one layer on the screen, called like itself.
inline MemoryModel::PresetRecord presetRecord(quint16 id, const QString& name)
{
    return {FileType::PresetPVW, id, name, {{Stage, {layerRecord(name)}}}};
}

/// The devices "A", which is active, and "B" in one group, each with one selected screen. A holds the presets
/// 1 "Opening", the active one, and 3 "Walk"; B holds 3 "Steps" and 12 "Finale". Both may load to program.
inline MemoryModel::ShowRecord show()
{
    MemoryModel::DeviceRecord device;
    device.groupId = "7";
    device.loadToPGMEnabled = true;
    device.subcards = {{1, 8, {}}};
    device.outputs = {{1, 1, 0, QSize(1920, 1080), true}};
    MemoryModel::ScreenRecord stage;
    stage.key = Stage;
    stage.name = "Stage";
    stage.selected = true;
    stage.effectSeconds = 0.1;
    stage.outputs = {{1, QRect(0, 0, 1920, 1080)}};
    stage.pvw = {layerRecord("next")};
    device.screens = {stage};
    device.activeScreen = Stage;

    MemoryModel::DeviceRecord a = device;
    a.ipMacSn = A;
    a.presets = {presetRecord(1, "Opening"), presetRecord(3, "Walk")};
    a.activePreset = 1;
    MemoryModel::DeviceRecord b = device;
    b.ipMacSn = B;
    b.presets = {presetRecord(3, "Steps"), presetRecord(12, "Finale")};
    return {A, {a, b}};
}

/// A test's console and model, and shorthands for what the preset tests ask.
class PresetTest : public QObject {
public:
    TestSupport::ConsoleRig& console() { return m_pRig->console(); }
    MemoryModel::Operations& operations() { return m_pRig->operations(); }

    PresetOptMode mode() const { return m_pRig->model().deviceList().presetOperateMode(); }

    /// Presses and releases keys one after the other and waits until each was handled.
    bool tap(std::initializer_list<quint32> keys)
    {
        return std::all_of(keys.begin(), keys.end(), [this](quint32 key) {
            console().tap(key);
            return console().settle();
        });
    }
    bool tap(quint32 key) { return tap({key}); }
    bool waitSlot(int slot, ECLEDColor color, const QString& label)
    {
        return console().waitShows(keyOf(slot), color) && console().waitLabel(Label + keyOf(slot), label);
    }

    /// File ids of a device's presets.
    QList<int> presets(const QString& device = A) const
    {
        QList<int> ids;
        const auto all = m_pRig->device(device)->presets();
        for (const auto& preset : all)
            ids.append(preset.lock()->fileId());
        return ids;
    }

    /// Name of the only layer of the screen's scene.
    QString scene(BizModel::SceneType scene = BizModel::SceneType::PVW, const QString& device = A) const
    {
        const auto layers = m_pRig->screen(device, Stage)->layers(scene, BizModel::LayerType::AllLayerType);
        const auto layer = layers.size() == 1 ? layers.first().lock() : nullptr;
        return layer ? layer->name() : QString();
    }

    /// Waits until the device has carried out a load of that preset.
    bool waitLoaded(int fileId, const QString& device = A) const
    {
        return QTest::qWaitFor([&] { return m_pRig->device(device)->activedPresetKeyNo() == fileId; });
    }

    /// Makes the rig with the first call, then the show.
    void start(const MemoryModel::ShowRecord& record = show())
    {
        if (!m_pRig)
            m_pRig = std::make_unique<TestSupport::ModelRig>(keyboard());
        // Nothing of the test before is under way any more.
        const auto* tasks = ParallelControl::ParallelManager::instance();
        QVERIFY(QTest::qWaitFor([&] { return tasks->currentTaskCount() == 0; }));
        QThreadPool::globalInstance()->waitForDone();
        ECManager::instance()->unlockKeypad();
        ECManager::instance()->unlockTBar();
        operations().clearAllOrders();
        QVERIFY(m_pRig->load(record));
        m_pRig->control().showPresetPage(0);
        m_pRig->model().deviceList().setPresetOperateMode(PresetOptMode::Noting);
        QVERIFY(console().settle());
        m_pRig->forget();
    }

protected:
    std::unique_ptr<TestSupport::ModelRig> m_pRig;
};

} // namespace PresetScene
