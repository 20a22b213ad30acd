#include "ecmanager.h"
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

std::shared_ptr<EC::s_ECKeyboardConfig> keyboard()
{
    TestSupport::KeyboardBuilder builder;
    builder.group("InputCommand").selectKeys(Select, SelectCount, Label + Select);
    builder.key(PageUp, int(InputCallbackType::ePageUp), 0, Label + PageUp)
        .key(PageDown, int(InputCallbackType::ePageDown), 0, Label + PageUp);
    return builder.build();
}

MemoryModel::LayerRecord layerRecord(quint32 id, quint32 inputId)
{
    MemoryModel::LayerRecord layer;
    layer.id = id;
    layer.name = QString("Layer %1").arg(id);
    layer.inputId = inputId;
    layer.window = QRect(0, 0, 960, 540);
    return layer;
}

QString inputName(quint32 id)
{
    return QString("In %1").arg(id);
}

/// One device with 14 inputs, the last of which is 4K and the first in its list, and the active screen Stage
/// with the preview layers 1 and 2 that show the inputs 1 and 8. The screen Confidence has layer 1 with input
/// 1. No layer is selected.
MemoryModel::ShowRecord show()
{
    static int s_count = 0;
    MemoryModel::DeviceRecord device;
    device.ipMacSn = QString("device %1").arg(++s_count);
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
    void init()
    {
        const auto loaded = show();
        m_device = loaded.activeDevice;
        QVERIFY(m_pRig->load(loaded));
        m_pRig->forget();
    }
    void cleanup() { m_pRig->operations().clearAllOrders(); }
    void cleanupTestCase() { m_pRig.reset(); }

    void fourteenInputsOnSixKeysTakeTwoPages()
    {
        for (const int page : {1, 2}) {
            QVERIFY(pageShows(page));
            for (int index = 0; index < SelectCount; ++index)
                QVERIFY(keyShows(
                    index, ECLEDColor::Yellow, inputName(quint32((page - 1) * SelectCount + index + 1))));
            tap(PageDown);
        }

        const LogCapture log;
        control().setOverload(m_device, 13, true); // on no key
        QCOMPARE(log.count(" Binding screen data error..."), 2);
        tap(PageDown);
        QVERIFY(pageShows(2));
        QVERIFY(log.contains("Can't perform page turning, the maximum page number is currently reached. This "
                             "is InputCommand"));
        tap(PageUp);
        QVERIFY(pageShows(1));
        QVERIFY(keyShows(0, ECLEDColor::Yellow, inputName(1)));
    }

    void aKeyGivesTheSelectedLayersItsInput()
    {
        select({1, 2});
        tap(PageDown);
        tap(Select + 1);
        QCOMPARE(sources(), QList<quint32>({8, 8}));
        QVERIFY(keyShows(1, ECLEDColor::Green, inputName(8)));
        const LogCapture log;
        m_pRig->operations().fail(Operation::BindSource, "ordered", Times::Once);
        tap(Select);
        QCOMPARE(sources(), QList<quint32>({8, 8}));
        QVERIFY(log.contains("The model refused to switch the layer input source."));
    }

    void aSourceThatTakesTooMuchIsRefusedAndTheLayersKeepTheirs()
    {
        control().removeInput(m_device, 1);
        control().removeInput(m_device, 2); // so that the 4K input has a key
        const LogCapture log;
        select({1, 2});
        tap(PageDown);
        tap(Select + 5);
        QCOMPARE(sources(), QList<quint32>({0, 8}));
        QVERIFY(log.contains("Layer resource out, failed to switch layer input source."));
        QCOMPARE(m_pRig->countNotices("status 1 3000 Not enough resources."), 1);
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

    void aPressWhileTheOtherConsolesIsCheckedIsRefused()
    {
        select({1, 2});
        const LogCapture log;
        m_pRig->operations().delay(
            Operation::CheckOperationResources, std::chrono::milliseconds(500), Times::Once);
        console().press(Select + 1);
        QVERIFY(m_pRig->waitAsked(Operation::CheckOperationResources, 1));
        const quint32 key = Constants::VirtualKeyOffset + TestSupport::appNumber(Select + 2);
        const QByteArray datagram = ConsolePanel::encodeUp(ConsolePanel::KeyReport{true, key}, 0);
        ECManager::instance()->upTLVDecodeFinished(ReportECButtonPressed, datagram.mid(ECValueOffset));
        QVERIFY(log.contains("Input key 52 refused: another input key press is still being checked."));
        QVERIFY(console().settle());
        QCOMPARE(sources(), QList<quint32>({2, 2}));
        tap(Select + 2);
        QCOMPARE(sources(), QList<quint32>({3, 3}));
        select({});
        tap(Select);
        QVERIFY(log.contains("Input key 50 refused: no layer is selected."));
        QCOMPARE(m_pRig->countNotices("status 1 3000 Please select a layer first."), 1);
        QCOMPARE(sources(), QList<quint32>({3, 3}));
    }

    void otherScreensAreNotChecked()
    {
        control().activateScreen(m_device, Confidence);
        QVERIFY(control().selectLayers(m_device, Confidence, SceneType::PVW, {1}));
        QVERIFY(keyShows(0, ECLEDColor::Green, inputName(1)));
        m_pRig->operations().fail(Operation::CheckOperationResources, "ordered", Times::Always);
        tap(Select + 1);
        QCOMPARE(sources(Confidence), QList<quint32>({2}));
        QVERIFY(m_pRig->asked(Operation::CheckOperationResources).isEmpty());
    }

    void theKeysFollowTheSelectedLayers()
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
        control().removeLayer(m_device, Stage, SceneType::PVW, 1);
        QVERIFY(keyShows(0, ECLEDColor::Yellow, inputName(1)));
    }

    void aPageKeyReleasedUnderADialogTurnsThePage()
    {
        console().press(PageDown);
        QVERIFY(console().waitShows(PageDown, ECLEDColor::Green));
        QDialog dialog;
        dialog.setModal(true);
        dialog.show();
        QVERIFY(QTest::qWaitFor([] { return QApplication::activeModalWidget() != nullptr; }));
        console().release(PageDown);
        QVERIFY(pageShows(2));
        QVERIFY(console().waitShows(PageDown, ECLEDColor::Off));
    }

    void inputsThatComeAndGoMoveTheOthers()
    {
        control().removeInput(m_device, 3);
        QVERIFY(keyShows(2, ECLEDColor::Yellow, inputName(4)));
        tap(PageDown);
        QVERIFY(keyShows(5, ECLEDColor::Yellow, inputName(13)));
        control().removeInput(m_device, 4);
        control().removeInput(m_device, 5);
        QVERIFY(keyShows(5, ECLEDColor::Off, QString()));
        // A dark key does nothing.
        const LogCapture log;
        tap(Select + 5);
        QVERIFY(log.contains("unable to find input"));
        control().addInput(m_device, {3, "Back again", 1, 3, CapacityMode::_SL, false, false});
        QVERIFY(keyShows(5, ECLEDColor::Yellow, inputName(14)));
        tap(PageUp);
        QVERIFY(keyShows(2, ECLEDColor::Off, "Back again"));
    }

    void withoutAScreenOrDeviceTheKeysAreDark()
    {
        auto loaded = show();
        loaded.devices[0].activeScreen = {};
        m_device = loaded.activeDevice;
        QVERIFY(m_pRig->load(loaded));
        QVERIFY(keyShows(0, ECLEDColor::Off, inputName(1)));
        const LogCapture log;
        tap(Select);
        QVERIFY(log.contains("Active screen is nullptr"));
        control().activateDevice({});
        QVERIFY(keyShows(0, ECLEDColor::Off, QString()));
        QVERIFY(log.contains("No actived device"));
        tap(Select);
        QVERIFY(log.contains("Active device is nullptr"));
        control().activateDevice(m_device);
        control().activateScreen(m_device, Stage);
        QVERIFY(keyShows(0, ECLEDColor::Yellow, inputName(1)));
    }

private:
    TestSupport::ConsoleRig& console() { return m_pRig->console(); }
    MemoryModel::Control& control() { return m_pRig->control(); }
    void select(const QList<quint32>& layers)
    {
        QVERIFY(control().selectLayers(m_device, Stage, SceneType::PVW, layers));
    }
    /// What feeds the layers of a screen's preview.
    QList<quint32> sources(ScreenKey key = Stage)
    {
        QList<quint32> ids;
        const auto layers =
            m_pRig->screen(m_device, key)->PVWLayers(BizModel::Enum::Layer::RegularAndAUXLayers);
        for (const auto& layer : layers)
            ids.append(layer.lock()->sourceId());
        return ids;
    }
    void tap(quint16 key)
    {
        console().tap(key);
        QVERIFY(console().settle());
    }
    bool keyShows(int index, ECLEDColor color, const QString& label)
    {
        const quint16 key = quint16(Select + index);
        return console().waitShows(key, color) && console().waitLabel(quint16(Label + key), label);
    }
    bool pageShows(int number) { return console().waitLabel(Label + PageUp, QString("Page %1").arg(number)); }

    std::unique_ptr<TestSupport::ModelRig> m_pRig;
    QString m_device;
};

QTEST_MAIN(TestInputKeys)
#include "tst_inputkeys.moc"
