#pragma once

#include "keyboardbuilder.h"
#include "modelrig.h"
#include "screencommand.h"

#include "bizmodel/layer.h"
#include "ecmanager.h"

#include <QTest>

/// The console and the show that the screen tests play with.
namespace ScreenScene {

using namespace Orvane;
using namespace Orvane::ECProxy::Client;
using BizModel::SceneType;
using MemoryModel::Operation;
using MemoryModel::ScreenKey;
using MemoryModel::ScreenType;
using State = BizModel::Screen::State;

/// The first of the select keys and how many there are.
constexpr quint16 Select = 1;
constexpr int SelectCount = 4;
/// The other keys' numbers on the console.
enum Key : quint16 {
    PageUp = 10,
    PageDown,
    Freeze,
    Match,
    FTB,
    Cut,
    Take,
    Mix,
    TimeUp,
    Swap,
    Edit,
    TimeDown
};
/// Labels are this much further than their keys.
constexpr quint16 Label = 100;

constexpr ScreenKey Stage{ScreenType::RegularScreen, 1};
constexpr ScreenKey Side{ScreenType::RegularScreen, 2};
constexpr ScreenKey Confidence{ScreenType::AUXScreen, 1};

inline std::shared_ptr<EC::s_ECKeyboardConfig> keyboard()
{
    TestSupport::KeyboardBuilder builder;
    builder.group("ScreenCommand").selectKeys(Select, SelectCount, Label + Select);
    builder.key(PageUp, 2, 0, Label + PageUp).key(PageDown, 3, 0, Label + PageUp);
    for (const quint16 key : {Freeze, Match, FTB, Cut, Take})
        builder.key(key, 4 + key - Freeze); // the function codes count like the keys
    builder.key(Mix, 9, 0, Label + Mix).key(TimeUp, 10, 0, Label + TimeUp).key(Swap, 11).key(Edit, 14);
    return builder.key(TimeDown, 15, 0, Label + TimeDown).build();
}

/// A screen with the layer "next" in the preview and "present" in the program.
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
    screen.outputs = {{quint32(uiScreenIndex + 1), QRect(0, 0, 1920, 1080)}};
    layer.name = "next";
    screen.pvw = {layer};
    layer.name = "present";
    screen.pgm = {layer};
    return screen;
}

const QString A = "A";
const QString B = "B";

/// Device "A" with the screens Stage (on key 1, selected, active), Side (on key 2) and the AUX screen
/// Confidence (on key 3), and outputs left over; device "B", not active, with one selected screen. Each is
/// alone, several screens may be selected at once, take copies.
inline MemoryModel::ShowRecord show()
{
    MemoryModel::DeviceRecord a;
    a.ipMacSn = A;
    a.groupId = BizModel::Device::defaultDeviceGroupId;
    a.multiScreens = true;
    a.limits.regularScreens = 24;
    a.subcards = {{1, 64, {}}};
    for (quint32 id = 1; id <= 8; ++id)
        a.outputs.append({id, 1, int(id), QSize(1920, 1080), true});
    a.screens = {
        screenRecord(Stage, "Stage", 0), screenRecord(Side, "Side", 1),
        screenRecord(Confidence, "Confidence", 2)};
    a.screens[0].selected = true;
    a.activeScreen = Stage;

    MemoryModel::DeviceRecord b = a;
    b.ipMacSn = B;
    b.screens = {a.screens[0]};
    b.screens[0].name = "Hall";
    return {A, {a, b}};
}

/// A test of the screen group on that console.
class ScreenTest : public TestSupport::ModelTest {
protected:
    ScreenTest()
        : ModelTest(keyboard())
    {
    }
    /// Begins a test: nothing of the one before is left.
    void start(const MemoryModel::ShowRecord& record = show())
    {
        ECManager::instance()->unlockKeypad();
        ECManager::instance()->unlockTBar();
        m_rig.letGo();
        m_rig.operations().clearAllOrders();
        QVERIFY(m_rig.load(record));
        console().takeRequests();
        m_rig.forget();
    }
    std::shared_ptr<BizModel::Screen> screen(ScreenKey key = Stage, const QString& device = A)
    {
        return m_rig.screen(device, key);
    }
    bool waitState(State state)
    {
        return QTest::qWaitFor([&] { return screen()->state() == state; });
    }
    /// Name of the only layer of a scene.
    QString layer(SceneType scene, ScreenKey key = Stage)
    {
        const auto layers = screen(key)->layers(scene, BizModel::LayerType::AllLayerType);
        return layers.size() == 1 ? layers.first().lock()->name() : QString();
    }
};

} // namespace ScreenScene
