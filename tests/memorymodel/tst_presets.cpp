#include "modeltestsupport.h"

#include "bizmodel/keypad.h"
#include "bizmodel/preset.h"
#include "modelcontrol/asyncmanager.h"
#include "modelcontrol/preset.h"
#include "tasksampling/samplingthread.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace Orvane;
using namespace Orvane::MemoryModel;
using namespace Orvane::MemoryModel::Test;
using namespace Orvane::ModelControl;
using BizModel::SceneType;
using State = BizModel::Screen::State;
using Ids = QList<quint32>;

namespace {

constexpr auto PVW = FileType::PresetPVW;
constexpr auto PGM = FileType::PresetPGM;

std::shared_ptr<BizModel::Preset> preset(Model& m, quint16 id)
{
    return find(m.device()->presets(), [&](const auto& each) { return each.presetDetail().id == id; });
}

std::shared_ptr<ModelControl::Preset> control(Model& m)
{
    return ModelControl::Preset::create(m.device());
}

ModelControl::Preset::Screens screensOf(const std::shared_ptr<BizModel::Preset>& preset)
{
    ModelControl::Preset::Screens screens;
    QString error;
    preset->presetSelectedScreens(screens, preset->fileType(), error);
    return screens;
}

ProtoModel::File::s_KeypadInfo keypadOf(Model& m)
{
    const auto files = m.device()->files(FileType::keypad);
    const auto keypad =
        files.isEmpty() ? nullptr : std::dynamic_pointer_cast<BizModel::Keypad>(files.first().lock());
    return keypad ? keypad->keypadInfo() : ProtoModel::File::s_KeypadInfo();
}

ProtoModel::File::s_KeypadInfo keypadBefore()
{
    ProtoModel::File::s_KeypadInfo info;
    info.keypadArray += {2, 0, 7, 5};
    return info;
}

/// Has device A load the preset.
bool sampleLoad(Model& m, quint8 id)
{
    const auto sampling = std::make_shared<TaskSampling::s_LoadPresetSampling>();
    sampling->nFileID = id;
    sampling->pCurDevice = m.device();
    sampling->lastKeypadInfo = keypadBefore();
    auto* const thread = TaskSampling::SamplingThread::instance();
    return thread->setSamplingType(TaskSampling::LoadPreset) && thread->appendData(sampling);
}

} // namespace

class TestPresets : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void presetStoresTheSelectedScreensOrAll()
    {
        Model m;
        QString error;
        QVERIFY(m.deviceControl()->createPresetFile(PGM, 2, error));
        QCOMPARE(screensOf(preset(m, 2)).size(), 1);
        QCOMPARE(screensOf(preset(m, 2)).first().lock(), m.screen(1));
        m.control().selectScreens(A, {});
        QVERIFY(m.deviceControl()->createPresetFile(PVW, 5, error));
        QCOMPARE(screensOf(preset(m, 5)).size(), 2); // those with outputs
        // Preview presets come first.
        QCOMPARE(m.device()->presets().first().lock()->presetDetail().id, quint16(5));
    }

    void presetIsRefused()
    {
        Model m;
        const auto refuses = [&](FileType type, quint16 id) {
            QString error;
            return !m.deviceControl()->createPresetFile(type, id, error) && !error.isEmpty();
        };
        QVERIFY(refuses(PVW, 0));
        QVERIFY(refuses(PVW, 129));
        QVERIFY(refuses(FileType::keypad, 1));
        QVERIFY(!refuses(PVW, 128));
        QVERIFY(refuses(PVW, 128)); // it is there
        m.control().removeScreen(A, First);
        m.control().removeScreen(A, {ScreenType::RegularScreen, 2});
        QVERIFY(refuses(PVW, 2)); // nothing to store
        ModelControl::Preset::Screens screens;
        QString error;
        QVERIFY(!preset(m, 128)->presetSelectedScreens(screens, PVW, error));
    }

    void loadingReplacesThePreviewOrTheProgram()
    {
        Model m;
        m.control().addPreset(A, PVW, 1);
        m.control().removeLayer(A, First, SceneType::PVW, 1);
        m.control().removeInput(A, 2);
        m.log.clear();
        QString error;
        const auto stored = preset(m, 1);
        QVERIFY(control(m)->updatePresetModelData(stored, screensOf(stored), error));
        // What the device does not have any more is left out.
        QCOMPARE(m.sources(1, SceneType::PVW), (Ids{1, 0}));
        QCOMPARE(m.sources(1, SceneType::PGM), Ids{3});
        QCOMPARE(
            m.log.names(), (QStringList{"signalDeviceScreenLayersChanged", "signalSelectedLayersChanged"}));
        m.control().setLoadToPGM(A, true);
        QVERIFY(control(m)->updatePresetModelData(stored, screensOf(stored), error));
        QCOMPARE(m.sources(1, SceneType::PGM), (Ids{1, 0}));

        QVERIFY(!control(m)->updatePresetModelData(stored, {m.screen(2)}, error)); // it is not stored
        m.control().setScreenState(A, First, State::Taking);
        m.log.clear();
        error.clear();
        QVERIFY(!control(m)->checkPresetData(stored, error));
        QVERIFY(!error.isEmpty());
        QVERIFY(!control(m)->updatePresetModelData(stored, screensOf(stored), error));
        QCOMPARE(m.log.names(), QStringList());
    }

    void failedDeviceLoadPutsTheKeypadBack()
    {
        Model m;
        m.control().addPreset(A, PVW, 1);
        m.model.operations().fail(Operation::SampleLoadPreset, "No answer.", Times::Once);
        QVERIFY(sampleLoad(m, 1));
        QVERIFY(m.log.waitFor("signalKeypadChanged"));
        QVERIFY(keypadOf(m) == keypadBefore());
        QCOMPARE(m.device()->activedPresetKeyNo(), 0);
    }

    void aLoadThatATakeForestallsLeavesTheFormerPresetActive_data()
    {
        QTest::addColumn<bool>("deviceFirst");
        QTest::newRow("the device is told first") << true;
        QTest::newRow("the model refuses first") << false;
    }
    void aLoadThatATakeForestallsLeavesTheFormerPresetActive()
    {
        QFETCH(bool, deviceFirst);
        Model m;
        for (const quint16 id : {1, 2})
            m.control().addPreset(A, PVW, id);
        m.control().activatePreset(A, PVW, 1);
        const auto stored = preset(m, 2);
        const auto screens = screensOf(stored);
        m.control().setScreenState(A, First, State::Taking);
        m.log.clear();
        QString error;
        if (deviceFirst) {
            QVERIFY(sampleLoad(m, 2) && m.log.waitFor("signalActivedPresetKeyNoChanged"));
            QCOMPARE(m.device()->activedPresetKeyNo(), 2);
        }
        QVERIFY(!control(m)->updatePresetModelData(stored, screens, error));
        if (!deviceFirst)
            QVERIFY(sampleLoad(m, 2) && m.log.waitFor("signalKeypadChanged"));
        QCOMPARE(m.device()->activedPresetKeyNo(), 1);
        QCOMPARE(m.log.count("signalActivedPresetKeyNoChanged"), deviceFirst ? 2 : 0);

        // The refusal is forgotten with its load.
        m.control().setScreenState(A, First, State::Normal);
        QVERIFY(control(m)->checkPresetData(stored, error));
        QVERIFY(sampleLoad(m, 2));
        QVERIFY(control(m)->updatePresetModelData(stored, screens, error));
        QVERIFY(waitUntil([&] { return m.device()->activedPresetKeyNo() == 2; }));
    }

    void keypadTellsHistoryAndColours()
    {
        Model m;
        for (const quint16 id : {1, 2, 3})
            m.control().addPreset(A, PVW, id);
        const auto load = [&](quint16 id) {
            ProtoModel::File::s_KeypadInfo info;
            const auto stored = preset(m, id);
            if (control(m)->createKeypadInfo(stored, screensOf(stored), info))
                m.device()->addKeypadFile(std::make_shared<BizModel::Keypad>(info));
        };
        load(2);
        load(3);
        auto info = keypadOf(m);
        QCOMPARE(info.presetInfo.beforeOnePreset, quint8(2));
        QCOMPARE(info.presetInfo.lastPVWPreset, quint8(3));
        QCOMPARE(info.presetInfo.lastPGMPreset, quint8(0));
        QCOMPARE(info.presetInfo.pvwScn, QVector<quint32>{1});
        QCOMPARE(info.keypadArray.size(), 3);
        QCOMPARE(info.keypadArray[2].buttonId, quint8(3));
        QCOMPARE(info.keypadArray[2].buttonColor, quint8(2));
        QCOMPARE(info.keypadArray[0].buttonColor, quint8(3));
        m.control().setLoadToPGM(A, true);
        load(1);
        info = keypadOf(m);
        QCOMPARE(info.presetInfo.beforeOnePreset, quint8(0));
        QCOMPARE(info.presetInfo.lastPVWPreset, quint8(3));
        QCOMPARE(info.presetInfo.lastPGMPreset, quint8(1));
    }

    void editingIsRefusedDuringATransition()
    {
        Model m;
        const QString text = "can't create PVW preset";
        const auto fault = [&](State state) {
            m.control().setScreenState(A, {ScreenType::RegularScreen, 2}, state);
            QString error;
            return m.device()->editPresetValidityCheck(text, error) ? QString() : error;
        };
        for (const State idle : {State::Normal, State::Resource_out})
            QCOMPARE(fault(idle), QString());
        for (const State busy : {State::Taking, State::Tbar_taking, State::MatchingPGM})
            QVERIFY(fault(busy).startsWith(text) && fault(busy) != text);
    }

    void failedSavingLeavesTheFileAsItWas()
    {
        QTemporaryDir directory;
        const QString path = directory.filePath("show.json");
        Model m;
        const auto save = [&m] {
            const Outcome outcome;
            AsyncManager::instance()->startAsyncRequest(
                AsyncSaveDeviceData{m.device(), outcome.completion()});
            outcome.wait();
            return outcome;
        };
        QVERIFY(!save().ok()); // nowhere
        m.model.setShowFile(path);
        QVERIFY(save().ok());
        const QByteArray saved = m.model.show();
        m.control().renameScreen(A, First, "Wall");
        m.model.operations().fail(Operation::AsyncSaveDeviceData, "Disk full.", Times::Once);
        QCOMPARE(save().text(), "Disk full.");
        m.model.setShowFile(directory.filePath("nowhere/show.json"));
        const Outcome unwritable = save();
        QVERIFY(!unwritable.ok() && unwritable.text().contains("nowhere"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), saved);
        QCOMPARE(QDir(directory.path()).entryList(QDir::Files), QStringList("show.json"));
    }
};

QTEST_GUILESS_MAIN(TestPresets)
#include "tst_presets.moc"
