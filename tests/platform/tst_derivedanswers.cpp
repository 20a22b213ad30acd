#include "bareplatform.h"

#include "bizmodel/input.h"
#include "bizmodel/layer.h"
#include "bizmodel/output.h"
#include "bizmodel/preset.h"
#include "modelcontrol/controllerfactory.h"
#include "modelcontrol/device.h"
#include "modelcontrol/preset.h"
#include "modelcontrol/screen.h"
#include "parallelcontrol/parallelmanager.h"

#include <QtTest>

using namespace Orvane;
using namespace Orvane::BizModel;
using State = Screen::State;

namespace {

constexpr int Mask = Enum::Screen::RegularAndAUXScreens;

class OneDeviceList : public TestSupport::BareDeviceList {
public:
    std::weak_ptr<Device> activedDevice() const override { return m_pActive; }

    std::shared_ptr<Device> m_pActive;
};

class NamedInput : public Input {
public:
    explicit NamedInput(quint32 id)
        : m_nId(id)
    {
    }
    quint32 interfaceId() const override { return m_nId; }
    QString name() const override { return QStringLiteral("In"); }

private:
    const quint32 m_nId;
};

class NamedPreset : public Preset {
public:
    NamedPreset(FileType type, quint16 id)
        : m_type(type)
        , m_nId(id)
    {
    }
    quint16 fileId() const override { return m_nId; }
    FileType fileType() const override { return m_type; }
    QString name() const override { return QStringLiteral("Scene"); }

private:
    const FileType m_type;
    const quint16 m_nId;
};

class PlacedOutput : public Output { };

class PlacedLayer : public Layer {
public:
    explicit PlacedLayer(quint32 id)
        : m_nId(id)
    {
    }
    quint32 layerId() const override { return m_nId; }
    s_ScreenLayerId screenLayerId() const override { return {1, SceneType::PVW, m_nId}; }
    QString name() const override { return {}; }
    SceneType sceneType() const override { return SceneType::PVW; }
    quint32 sourceId() const override { return 1; }
    QRect windowRect() const override { return {0, 0, 10, 10}; }

private:
    const quint32 m_nId;
};

class WideScreen : public TestSupport::BareScreen {
public:
    using BareScreen::BareScreen;
    QList<std::weak_ptr<Output>> outputs() const override { return {m_left, m_right}; }
    QRectF mosaicRect(const std::weak_ptr<Output>& output) const override
    {
        return QRectF(output.lock() == m_left ? 0 : 1920, 0, 1920, 1080);
    }
    QList<std::weak_ptr<Layer>> layers(SceneType scene, int mask) const override
    {
        QList<std::weak_ptr<Layer>> list;
        for (const auto& layer : m_layers) {
            if (layer->sceneType() == scene && (layer->layerType() & mask))
                list += layer;
        }
        return list;
    }
    bool PGMEditEnable() const override { return m_bEdit; }

    bool m_bEdit = false;
    const std::shared_ptr<Output> m_left = std::make_shared<PlacedOutput>();
    const std::shared_ptr<Output> m_right = std::make_shared<PlacedOutput>();
    QList<std::shared_ptr<Layer>> m_layers;
};

class StoringDevice : public TestSupport::BareDevice {
public:
    QString groupId() const override { return m_strGroup; }
    bool onlineFlag() const override { return m_bOnline; }
    QList<std::weak_ptr<Input>> validInputs() const override { return {m_input}; }
    QList<std::weak_ptr<Preset>> presets() const override { return {m_preview, m_program}; }
    std::weak_ptr<Preset> activedPreset() const override { return m_program; }

    QString m_strGroup = defaultDeviceGroupId;
    bool m_bOnline = true;
    const std::shared_ptr<Input> m_input = std::make_shared<NamedInput>(7);
    const std::shared_ptr<Preset> m_preview = std::make_shared<NamedPreset>(File::FileType::PresetPVW, 1);
    const std::shared_ptr<Preset> m_program = std::make_shared<NamedPreset>(File::FileType::PresetPGM, 4);
};

class DeviceControl : public ModelControl::Device {
public:
    explicit DeviceControl(const std::weak_ptr<BizModel::Device>& device)
        : Device(device)
    {
    }
    void setActivedScreen(const std::weak_ptr<Screen>&) override { }
};

} // namespace

/// What a model need not say because it follows from what it does say.
class TestDerivedAnswers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void selectionAndTakesFollowFromTheScreens()
    {
        const auto device = std::make_shared<TestSupport::BareDevice>();
        const DeviceControl control(device);
        QVERIFY(!control.takeCutEnabled()); // nothing to take
        for (const quint32 id : {1, 2})
            device->m_screens += std::make_shared<TestSupport::BareScreen>(id);
        const auto& second = device->m_screens[1];
        second->m_bSelected = true;
        QCOMPARE(device->selectedScreen(Mask).size(), 1);
        QVERIFY(device->isScreenSelected(second));
        QVERIFY(!device->isScreenSelected(device->m_screens[0]));
        QVERIFY(!device->isScreenSelected({}));
        QVERIFY(control.takeCutEnabled());
        QCOMPARE(control.getTakeScreens(Mask, {}, true).size(), 1);
        QCOMPARE(control.getTakeScreens(Mask, {}, false).size(), 2);
        for (const State busy : {State::Taking, State::Cut, State::Tbar_taking, State::MatchingPGM}) {
            second->m_state = busy;
            QVERIFY(!control.takeCutEnabled());
            QCOMPARE(device->isTaking(), busy == State::Taking);
        }
        second->m_state = State::Resource_out;
        QVERIFY(control.takeCutEnabled());
        device->m_screens.clear();
        QVERIFY(!DeviceControl({}).takeCutEnabled());
    }

    void aLoneDeviceIsItsOwnGroup()
    {
        OneDeviceList list;
        const auto active = std::make_shared<StoringDevice>();
        const auto other = std::make_shared<StoringDevice>();
        list.m_pActive = active;
        const auto group = [&](const std::shared_ptr<Device>& device, bool offline, bool exclude) {
            return list.groupDevices(std::weak_ptr<Device>(device), offline, exclude);
        };
        QCOMPARE(list.groupDevices(Device::defaultDeviceGroupId).size(), 1);
        QCOMPARE(list.groupDevices("5").size(), 0);
        QCOMPARE(group(other, true, false).size(), 1);
        QCOMPARE(group(other, true, false).first().lock(), std::shared_ptr<Device>(other));
        QCOMPARE(group(active, true, true).size(), 0);
        QCOMPARE(group({}, true, false).size(), 0);
        active->m_bOnline = false;
        QCOMPARE(group(active, false, false).size(), 0);
        QCOMPARE(group(active, true, false).size(), 1);
        // The active device, known to be in the group, is found beside the other one.
        active->m_strGroup = other->m_strGroup = "5";
        QCOMPARE(list.groupDevices("5").size(), 1);
        QCOMPARE(group(other, true, false).size(), 2);
        QCOMPARE(list.groupDevicePresets(other).size(), 4);
    }

    void inputsPresetsAndFilesAreFoundAmongWhatIsThere()
    {
        const StoringDevice device;
        QCOMPARE(device.findInput(7).lock(), device.m_input);
        QVERIFY(device.findInput(8).expired());
        QVERIFY(device.m_input->interfaceFullId() == (s_InterfaceFullId{0, 7}));
        QCOMPARE(device.activedPresetKeyNo(), 4);
        QCOMPARE(device.m_program->presetDetail().id, quint16(4));
        QCOMPARE(device.m_program->presetDetail().name, QString("Scene"));
        const auto programs = device.files(File::FileType::PresetPGM);
        QCOMPARE(programs.size(), 1);
        QCOMPARE(programs.first().lock(), std::shared_ptr<File>(device.m_program));
        QVERIFY(device.files(File::FileType::keypad).isEmpty());
    }

    void aScreenCountsItsLayersAndItsMosaic()
    {
        WideScreen screen(1);
        QCOMPARE(screen.mosaicWindowRect(), QRect(0, 0, 3840, 1080));
        QCOMPARE(screen.nextLayerId(SceneType::PVW, LayerType::Regular), 1U);
        for (const quint32 id : {1, 3})
            screen.m_layers += std::make_shared<PlacedLayer>(id);
        QCOMPARE(screen.layerCount(SceneType::PVW, LayerType::AllLayerType), 2);
        QCOMPARE(screen.layerCount(SceneType::PGM, LayerType::AllLayerType), 0);
        QCOMPARE(screen.nextLayerName(SceneType::PVW, LayerType::Regular), QString("Layer 2"));
        QCOMPARE(screen.operationTarget(), SceneType::PVW);
        screen.m_bEdit = true;
        QCOMPARE(screen.operationTarget(), SceneType::PGM);
    }
};

QTEST_GUILESS_MAIN(TestDerivedAnswers)
#include "tst_derivedanswers.moc"
