#include "inputcommand.h"
#include "keyboardbuilder.h"
#include "logcapture.h"
#include "modelrig.h"

#include "bizmodel/input.h"
#include "bizmodel/layer.h"

#include <QApplication>
#include <QDialog>
#include <QTest>

using namespace Orvane;
using namespace Orvane::ECProxy::Client;
using BizModel::CapacityMode;
using BizModel::SceneType;
using MemoryModel::Operation;
using MemoryModel::ScreenKey;
using MemoryModel::ScreenType;
using MemoryModel::Times;
using TestSupport::LogCapture;

namespace {

enum Key : quint16 { Select = 50, PageUp = 60, PageDown = 61 };
constexpr int SelectCount = 6;
constexpr quint16 Label = 500; ///< a label's number is its key's and this
constexpr int InputCount = 14;
constexpr ScreenKey Stage{ScreenType::RegularScreen, 1};
constexpr ScreenKey Confidence{ScreenType::AUXScreen, 1};

const QString NoKey = QStringLiteral(" Binding screen data error...");

std::shared_ptr<EC::s_ECKeyboardConfig> keyboard()
{
    TestSupport::KeyboardBuilder builder;
    builder.group(QStringLiteral("InputCommand")).selectKeys(Select, SelectCount, Label + Select);
    builder.key(PageUp, int(InputCallbackType::ePageUp), 0, Label + PageUp)
        .key(PageDown, int(InputCallbackType::ePageDown), 0, Label + PageUp);
    return builder.build();
}

MemoryModel::LayerRecord layerRecord(quint32 id, quint32 inputId)
{
    MemoryModel::LayerRecord layer;
    layer.id = id;
    layer.name = QStringLiteral("Layer %1").arg(id);
    layer.inputId = inputId;
    layer.window = QRect(0, 0, 960, 540);
    return layer;
}

QString inputName(quint32 id)
{
    return QStringLiteral("In %1").arg(id);
}

/// One device with 14 inputs, the last of which is 4K and the first in its list, and the active screen Stage
/// with the preview layers 1 and 2 that show the inputs 1 and 8. The screen Confidence has layer 1 with input
/// 1. No layer is selected.
MemoryModel::ShowRecord show()
{
    static int s_count = 0;
    MemoryModel::DeviceRecord device;
    device.ipMacSn = QStringLiteral("device %1").arg(++s_count);
    device.groupId = BizModel::Device::defaultDeviceGroupId;
    MemoryModel::SubcardRecord inputCard;
    inputCard.id = 1;
    for (quint32 id = InputCount; id >= 1; --id) {
        const auto capacity = id == InputCount ? CapacityMode::_4K : CapacityMode::_SL;
        inputCard.connectors.append({id, capacity});
        device.inputs.append({id, inputName(id), 1, id, capacity, true, false});
    }
    device.subcards = {inputCard, {2, 5, {}}}; // room for one 4K layer and a small one
    device.outputs = {{1, 2, 0, QSize(1920, 1080), true}, {2, 2, 0, QSize(1920, 1080), true}};
    MemoryModel::ScreenRecord stage;
    stage.key = Stage;
    stage.outputs = {{1, QRect(0, 0, 1920, 1080)}};
    stage.pvw = {layerRecord(1, 1), layerRecord(2, 8)};
    MemoryModel::ScreenRecord confidence;
    confidence.key = Confidence;
    confidence.outputs = {{2, QRect(0, 0, 1920, 1080)}};
    confidence.pvw = {layerRecord(1, 1)};
    confidence.pvw[0].type = BizModel::LayerType::AUX;
    device.screens = {stage, confidence};
    device.activeScreen = Stage;
    return {device.ipMacSn, {device}};
}

} // namespace

/// The stories of the input group's keys, from the press to the model and back to the lights.
class TestInputKeys : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_pRig = std::make_unique<TestSupport::ModelRig>(keyboard()); }
    void init();
    void cleanup() { m_pRig->operations().clearAllOrders(); }
    void cleanupTestCase() { m_pRig.reset(); }

    void fourteenInputsOnSixKeysTakeTwoPages();
    void colorsTellSignalOverloadAndSelection();
    void aKeyGivesTheSelectedLayersItsInput();
    void aKeyWithoutASelectionSaysSo();
    void aSourceThatTakesTooMuchIsRefusedAndTheLayersKeepTheirs();
    void otherScreensAreNotChecked();
    void dialogsLetNoInputKeyThrough();
    void aRenamedInputOnTheOtherPageShowsItsNameThere();
    void theConsoleTurnsToTheSelectedLayersInput();
    void inputsThatComeAndGoMoveTheOthers();
    void withoutAScreenOrDeviceTheKeysAreDark();

private:
    TestSupport::ConsoleRig& console() { return m_pRig->console(); }
    MemoryModel::Control& control() { return m_pRig->control(); }
    void select(const QList<quint32>& layers)
    {
        QVERIFY(control().selectLayers(m_device, Stage, SceneType::PVW, layers));
    }
    QList<quint32> sources(ScreenKey key = Stage);
    void tap(quint16 key);
    bool keyShows(int index, ECLEDColor color, const QString& label);
    bool pageShows(int number)
    {
        return console().waitLabel(Label + PageUp, QStringLiteral("Page %1").arg(number));
    }

    std::unique_ptr<TestSupport::ModelRig> m_pRig;
    QString m_device;
};

void TestInputKeys::init()
{
    const auto loaded = show();
    m_device = loaded.activeDevice;
    QVERIFY(m_pRig->load(loaded));
    m_pRig->forget();
}

QList<quint32> TestInputKeys::sources(ScreenKey key)
{
    QList<quint32> ids;
    const auto layers = m_pRig->screen(m_device, key)->PVWLayers(BizModel::Enum::Layer::RegularAndAUXLayers);
    for (const auto& weakLayer : layers) {
        if (const auto layer = weakLayer.lock())
            ids.append(layer->sourceId());
    }
    return ids;
}

void TestInputKeys::tap(quint16 key)
{
    console().tap(key);
    QVERIFY(console().settle());
}

bool TestInputKeys::keyShows(int index, ECLEDColor color, const QString& label)
{
    const quint16 key = quint16(Select + index);
    return console().waitShows(key, color) && console().waitLabel(quint16(Label + key), label);
}

void TestInputKeys::fourteenInputsOnSixKeysTakeTwoPages()
{
    QVERIFY(pageShows(1));
    for (int index = 0; index < SelectCount; ++index)
        QVERIFY(keyShows(index, ECLEDColor::Yellow, inputName(quint32(index) + 1)));
    tap(PageDown);
    QVERIFY(pageShows(2));
    for (int index = 0; index < SelectCount; ++index)
        QVERIFY(keyShows(index, ECLEDColor::Yellow, inputName(quint32(index) + 7)));

    const LogCapture log;
    control().setOverload(m_device, 13, true); // on no key
    QCOMPARE(log.count(NoKey), 2);
    tap(PageDown);
    QVERIFY(pageShows(2));
    QVERIFY(log.contains(QStringLiteral(
        "Can't perform page turning, the maximum page number is currently reached. This is InputCommand")));
    tap(PageUp);
    QVERIFY(pageShows(1));
    QVERIFY(keyShows(0, ECLEDColor::Yellow, inputName(1)));
}

void TestInputKeys::colorsTellSignalOverloadAndSelection()
{
    const auto shows = [&](ECLEDColor color) { return keyShows(0, color, inputName(1)); };
    QVERIFY(shows(ECLEDColor::Yellow));
    control().setOverload(m_device, 1, true);
    QVERIFY(shows(ECLEDColor::Orange));
    control().setSignal(m_device, 1, false);
    QVERIFY(shows(ECLEDColor::Off));
    control().setOverload(m_device, 1, false);
    QVERIFY(shows(ECLEDColor::Off));
    select({1});
    QVERIFY(shows(ECLEDColor::Red));
    control().setSignal(m_device, 1, true);
    QVERIFY(shows(ECLEDColor::Green));
    control().setOverload(m_device, 1, true);
    QVERIFY(shows(ECLEDColor::Red));
    control().setOverload(m_device, 1, false);
    QVERIFY(shows(ECLEDColor::Green));
    QVERIFY(keyShows(1, ECLEDColor::Yellow, inputName(2)));
    control().removeLayer(m_device, Stage, SceneType::PVW, 1);
    QVERIFY(shows(ECLEDColor::Yellow));
}

void TestInputKeys::aKeyGivesTheSelectedLayersItsInput()
{
    select({1, 2});
    tap(Select + 2);
    QCOMPARE(sources(), QList<quint32>({3, 3}));
    QVERIFY(keyShows(2, ECLEDColor::Green, inputName(3)));
    QVERIFY(keyShows(0, ECLEDColor::Yellow, inputName(1)));
    tap(PageDown);
    tap(Select + 1);
    QCOMPARE(sources(), QList<quint32>({8, 8}));
    QVERIFY(keyShows(1, ECLEDColor::Green, inputName(8)));
    const LogCapture log;
    m_pRig->operations().fail(Operation::BindSource, QStringLiteral("ordered"), Times::Once);
    tap(Select);
    QCOMPARE(sources(), QList<quint32>({8, 8}));
    QVERIFY(log.contains(QStringLiteral("The model refused to switch the layer input source.")));
}

void TestInputKeys::aKeyWithoutASelectionSaysSo()
{
    tap(Select);
    QCOMPARE(m_pRig->countNotices(QStringLiteral("status 1 3000 Please select a layer first.")), 1);
    QVERIFY(m_pRig->asked(Operation::BindSource).isEmpty());
}

void TestInputKeys::aSourceThatTakesTooMuchIsRefusedAndTheLayersKeepTheirs()
{
    control().removeInput(m_device, 1);
    control().removeInput(m_device, 2); // so that the 4K input has a key
    const LogCapture log;
    select({1, 2});
    tap(PageDown);
    tap(Select + 5);
    QCOMPARE(sources(), QList<quint32>({0, 8}));
    QVERIFY(log.contains(QStringLiteral("Layer resource out, failed to switch layer input source.")));
    QCOMPARE(m_pRig->countNotices(QStringLiteral("status 1 3000 Not enough resources.")), 1);
    const auto layers = m_pRig->screen(m_device, Stage)->PVWLayers(BizModel::LayerType::Regular);
    for (const auto& layer : layers)
        QCOMPARE(layer.lock()->capacity(), CapacityMode::_SL);

    // One such layer alone fits.
    control().removeLayer(m_device, Stage, SceneType::PVW, 1);
    select({2});
    tap(PageDown);
    tap(Select + 5);
    QCOMPARE(sources(), QList<quint32>({14}));
    QVERIFY(keyShows(5, ECLEDColor::Green, inputName(14)));
}

void TestInputKeys::otherScreensAreNotChecked()
{
    control().activateScreen(m_device, Confidence);
    QVERIFY(control().selectLayers(m_device, Confidence, SceneType::PVW, {1}));
    QVERIFY(keyShows(0, ECLEDColor::Green, inputName(1)));
    m_pRig->operations().fail(Operation::CheckOperationResources, QStringLiteral("ordered"), Times::Always);
    tap(Select + 1);
    QCOMPARE(sources(Confidence), QList<quint32>({2}));
    QVERIFY(m_pRig->asked(Operation::CheckOperationResources).isEmpty());
}

void TestInputKeys::dialogsLetNoInputKeyThrough()
{
    select({1});
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    QTRY_COMPARE(QApplication::activeModalWidget(), static_cast<QWidget*>(&dialog));
    tap(Select + 2);
    dialog.close();
    QTRY_VERIFY(!QApplication::activeModalWidget());
    qApp->setProperty(Constants::QuenorProperty, true);
    tap(Select + 2);
    qApp->setProperty(Constants::QuenorProperty, false);
    QCOMPARE(sources().first(), 1u);
    tap(Select + 2);
    QCOMPARE(sources().first(), 3u);
}

void TestInputKeys::aRenamedInputOnTheOtherPageShowsItsNameThere()
{
    control().renameInput(m_device, 1, QStringLiteral("Pulpit"));
    QVERIFY(keyShows(0, ECLEDColor::Yellow, QStringLiteral("Pulpit")));
    QVERIFY(console().settle());
    console().takeRequests();
    control().renameInput(m_device, 7, QStringLiteral("Choir"));
    QVERIFY(console().settle());
    QVERIFY(console().takeRequests().empty());
    tap(PageDown);
    QVERIFY(keyShows(0, ECLEDColor::Yellow, QStringLiteral("Choir")));
}

void TestInputKeys::theConsoleTurnsToTheSelectedLayersInput()
{
    select({2});
    QVERIFY(pageShows(2));
    QVERIFY(keyShows(1, ECLEDColor::Green, inputName(8)));
    QVERIFY(keyShows(0, ECLEDColor::Yellow, inputName(7)));
    select({1, 2});
    QVERIFY(console().settle());
    QVERIFY(pageShows(2));
    select({1});
    QVERIFY(pageShows(1));
    QVERIFY(keyShows(0, ECLEDColor::Green, inputName(1)));
}

void TestInputKeys::inputsThatComeAndGoMoveTheOthers()
{
    control().removeInput(m_device, 3);
    QVERIFY(keyShows(2, ECLEDColor::Yellow, inputName(4)));
    QVERIFY(keyShows(5, ECLEDColor::Yellow, inputName(7)));
    tap(PageDown);
    QVERIFY(keyShows(5, ECLEDColor::Yellow, inputName(13)));
    control().removeInput(m_device, 4);
    control().removeInput(m_device, 5);
    QVERIFY(keyShows(5, ECLEDColor::Off, QString()));
    // A dark key does nothing.
    const LogCapture log;
    tap(Select + 5);
    QVERIFY(log.contains(QStringLiteral("unable to find input")));
    control().addInput(m_device, {3, QStringLiteral("Back again"), 1, 3, CapacityMode::_SL, false, false});
    QVERIFY(keyShows(5, ECLEDColor::Yellow, inputName(14)));
    tap(PageUp);
    QVERIFY(keyShows(2, ECLEDColor::Off, QStringLiteral("Back again")));
}

void TestInputKeys::withoutAScreenOrDeviceTheKeysAreDark()
{
    auto loaded = show();
    loaded.devices[0].activeScreen = {};
    m_device = loaded.activeDevice;
    QVERIFY(m_pRig->load(loaded));
    QVERIFY(keyShows(0, ECLEDColor::Off, inputName(1)));
    const LogCapture log;
    tap(Select);
    QVERIFY(log.contains(QStringLiteral("Active screen is nullptr")));
    control().activateDevice({});
    QVERIFY(keyShows(0, ECLEDColor::Off, QString()));
    QVERIFY(log.contains(QStringLiteral("No actived device")));
    tap(Select);
    QVERIFY(log.contains(QStringLiteral("Active device is nullptr")));
    control().activateDevice(m_device);
    control().activateScreen(m_device, Stage);
    QVERIFY(keyShows(0, ECLEDColor::Yellow, inputName(1)));
}

QTEST_MAIN(TestInputKeys)
#include "tst_inputkeys.moc"
