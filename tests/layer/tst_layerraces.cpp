#include "inputcommand.h"
#include "layerscene.h"

#include "bizmodel/input.h"
#include "ecmanager.h"

#include <QLoggingCategory>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <map>
#include <random>
#include <thread>

using namespace LayerScene;

namespace {

/// The input group's keys on the same console.
enum InputKey : quint16 { SelectInput = 50, InputPageUp = 60, InputPageDown = 61 };
constexpr int InputKeyCount = 3;
constexpr int LayerPages = 8;
constexpr int Steps = 300;

std::shared_ptr<EC::s_ECKeyboardConfig> wholeKeyboard()
{
    TestSupport::KeyboardBuilder builder;
    builder.group(QStringLiteral("InputCommand")).selectKeys(SelectInput, InputKeyCount, Label + SelectInput);
    builder.key(InputPageUp, int(InputCallbackType::ePageUp), 0, Label + InputPageUp)
        .key(InputPageDown, int(InputCallbackType::ePageDown), 0, Label + InputPageUp);
    const auto keyboard = LayerScene::keyboard();
    keyboard->m_commands += builder.build()->m_commands;
    return keyboard;
}

/// What a key shows: its label and its colour.
using KeyFace = std::pair<QString, ECLEDColor>;

} // namespace

/// Keys of both consoles, the application and the model's own threads at once; when they are done, the
/// console shows what the model holds.
class TestLayerRaces : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theConsoleEndsUpAsTheModel_data();
    void theConsoleEndsUpAsTheModel();
    void cleanupTestCase() { m_pRig.reset(); }

private:
    using Random = std::mt19937;

    TestSupport::ConsoleRig& console() { return m_pRig->console(); }
    MemoryModel::Control& control() { return m_pRig->control(); }
    void pressSomeKey(Random& random);
    void pressSomeKeyOnScreen(Random& random);
    void changeSomething(Random& random);
    KeyFace face(quint16 key);
    QMultiMap<QString, ECLEDColor> shownLayers();
    QMultiMap<QString, ECLEDColor> presentLayers();
    bool inputsAgree();

    std::unique_ptr<TestSupport::ModelRig> m_pRig;
    QString m_device;
};

void TestLayerRaces::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    m_pRig = std::make_unique<TestSupport::ModelRig>(wholeKeyboard());
}

void TestLayerRaces::pressSomeKey(Random& random)
{
    static const std::vector<quint16> s_keys = {
        Select,      Select + 1,      Select + 2,  Select + 3,    Select,          Select + 1,
        PageUp,      PageDown,        Remove,      ToFront,       ToBack,          Full,
        SelectInput, SelectInput + 1, InputPageUp, InputPageDown, SelectInput + 2, Cut};
    console().tap(s_keys[random() % s_keys.size()]);
}

void TestLayerRaces::pressSomeKeyOnScreen(Random& random)
{
    static const std::vector<quint16> s_keys = {Select,   Select + 1, Select + 2, Select + 3, Remove,
                                                PageDown, PageUp,     Clear,      SelectInput};
    const quint16 key = s_keys[random() % s_keys.size()];
    const quint32 value = Constants::VirtualKeyOffset + TestSupport::appNumber(key);
    for (const bool pressed : {true, false}) {
        const QByteArray datagram = ConsolePanel::encodeUp(ConsolePanel::KeyReport{pressed, value}, 0);
        ECManager::instance()->upTLVDecodeFinished(
            pressed ? ReportECButtonPressed : ReportECButtonRelease, datagram.mid(ECValueOffset));
    }
    if (key == Clear)
        control().answerMessageBox(random() % 4 == 0 ? QMessageBox::Yes : QMessageBox::No);
}

void TestLayerRaces::changeSomething(Random& random)
{
    const quint32 layer = random() % 6 + 1;
    const quint32 input = random() % 5 + 1;
    switch (random() % 10) {
    case 0:
    case 1:
        control().addLayer(m_device, Stage, SceneType::PVW, input, QRect({0, 0}, SingleLink));
        break;
    case 2:
        control().removeLayer(m_device, Stage, SceneType::PVW, layer);
        break;
    case 3:
        control().selectLayers(m_device, Stage, SceneType::PVW, {layer});
        break;
    case 4:
        control().selectLayers(m_device, Stage, SceneType::PVW, {});
        break;
    case 5:
        control().renameLayer(
            m_device, Stage, SceneType::PVW, layer, QStringLiteral("Name %1").arg(random() % 100));
        break;
    case 6:
        control().setSignal(m_device, input, random() % 2 == 0);
        break;
    case 7:
        control().setOverload(m_device, input, random() % 2 == 0);
        break;
    case 8:
        control().renameInput(m_device, input, QStringLiteral("Input %1").arg(random() % 100));
        break;
    case 9:
        control().activateScreen(m_device, random() % 4 == 0 ? Confidence : Stage);
        break;
    }
}

KeyFace TestLayerRaces::face(quint16 key)
{
    const QString label = console().label(quint16(Label + key));
    for (const auto color : {ECLEDColor::Green, ECLEDColor::Yellow, ECLEDColor::Red, ECLEDColor::Orange}) {
        if (console().shows(key, color))
            return {label, color};
    }
    return {label, ECLEDColor::Off};
}

QMultiMap<QString, ECLEDColor> TestLayerRaces::shownLayers()
{
    QMultiMap<QString, ECLEDColor> shown;
    for (int i = 0; i < LayerPages; ++i)
        console().tap(PageUp);
    console().settle();
    for (int page = 0; page < LayerPages; ++page) {
        for (int index = 0; index < SelectCount; ++index) {
            const KeyFace key = face(quint16(Select + index));
            if (key != KeyFace(QString(), ECLEDColor::Off))
                shown.insert(key.first, key.second);
        }
        console().tap(PageDown);
        console().settle();
    }
    return shown;
}

QMultiMap<QString, ECLEDColor> TestLayerRaces::presentLayers()
{
    QMultiMap<QString, ECLEDColor> present;
    const auto stage = m_pRig->screen(m_device, Stage);
    const auto layers = stage->PVWLayers(BizModel::Enum::Layer::RegularAndAUXLayers);
    const auto weakSelected = stage->selectedLayers(SceneType::PVW);
    for (const auto& weakLayer : layers) {
        const auto layer = weakLayer.lock();
        const bool isSelected = std::any_of(weakSelected.begin(), weakSelected.end(), [&](const auto& other) {
            return other.lock() == layer;
        });
        present.insert(layer->name(), isSelected ? ECLEDColor::Green : ECLEDColor::Yellow);
    }
    return present;
}

bool TestLayerRaces::inputsAgree()
{
    std::map<quint32, std::shared_ptr<BizModel::Input>> inputs;
    const auto weakInputs = m_pRig->device(m_device)->validInputs();
    for (const auto& weakInput : weakInputs)
        inputs[weakInput.lock()->interfaceId()] = weakInput.lock();
    const auto feeding = m_pRig->screen(m_device, Stage)->selectedLayers(SceneType::PVW);
    console().tap(InputPageUp);
    console().settle();
    for (int index = 0; index < InputKeyCount; ++index) {
        const auto& input = inputs[quint32(index) + 1];
        const bool isFeeding = std::any_of(feeding.begin(), feeding.end(), [&](const auto& layer) {
            return layer.lock()->sourceId() == input->interfaceId();
        });
        const bool isActive = input->isActive();
        const ECLEDColor color = isFeeding
            ? (isActive && !input->isOverLoad() ? ECLEDColor::Green : ECLEDColor::Red)
            : !isActive           ? ECLEDColor::Off
            : input->isOverLoad() ? ECLEDColor::Orange
                                  : ECLEDColor::Yellow;
        if (face(quint16(SelectInput + index)) != KeyFace(input->name(), color))
            return false;
    }
    return true;
}

void TestLayerRaces::theConsoleEndsUpAsTheModel_data()
{
    QTest::addColumn<uint>("seed");
    for (uint seed = 1; seed <= 8; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void TestLayerRaces::theConsoleEndsUpAsTheModel()
{
    QFETCH(uint, seed);
    const auto show = LayerScene::show({layerRecord(1), layerRecord(2), layerRecord(3)});
    m_device = show.activeDevice;
    QVERIFY(m_pRig->load(show));

    // The other two sides keep pace with this one, or it would spend its time on what they have queued.
    std::atomic<int> stepsDue{0};
    std::thread application([&] {
        Random random(seed * 2);
        for (int step = 0; step < Steps; ++step) {
            while (step >= stepsDue)
                std::this_thread::yield();
            changeSomething(random);
        }
    });
    Random random(seed);
    for (int step = 1; step <= Steps; ++step) {
        stepsDue = step;
        pressSomeKey(random);
        if (random() % 4 == 0)
            pressSomeKeyOnScreen(random);
        if (random() % 8 == 0)
            changeSomething(random);
        QCoreApplication::processEvents();
        if (step % 10 == 0)
            console().settle();
    }
    application.join();
    QVERIFY(console().settle());
    // Past the last count of full-screen presses, out-of-resources state and clearing.
    const auto stage = m_pRig->screen(m_device, Stage);
    QTest::qWait(250);
    QTRY_COMPARE(stage->state(), BizModel::Screen::State::Normal);
    control().activateScreen(m_device, Stage);
    QVERIFY(console().settle());

    QCOMPARE(
        console().label(Label + PageUp),
        QStringLiteral("Page %1").arg(ECManager::instance()->page("LayerCommand") + 1));
    QCOMPARE(
        console().label(Label + InputPageUp),
        QStringLiteral("Page %1").arg(ECManager::instance()->page("InputCommand") + 1));
    QCOMPARE(shownLayers(), presentLayers());
    // A layer, unlike an input, may have been selected without a change of pages since.
    QTRY_VERIFY(inputsAgree());
    QCOMPARE(console().unreadableRequests(), 0u);
}

QTEST_MAIN(TestLayerRaces)
#include "tst_layerraces.moc"
