#include "modeltestsupport.h"

#include "bizmodel/keypad.h"
#include "bizmodel/preset.h"
#include "modelcontrol/asyncmanager.h"
#include "modelcontrol/preset.h"
#include "showfile.h"
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

const QString A = QStringLiteral("A");
const QString B = QStringLiteral("B");
constexpr auto PVW = FileType::PresetPVW;
constexpr auto PGM = FileType::PresetPGM;

std::shared_ptr<BizModel::Preset> preset(Model& m, quint16 id, const QString& device = A)
{
    const auto all = m.device(device)->presets();
    for (const auto& weak : all) {
        const auto each = weak.lock();
        if (each && each->presetDetail().id == id)
            return each;
    }
    return nullptr;
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

bool sampleLoad(Model& m, quint8 id, ProtoModel::File::s_KeypadInfo before = {})
{
    const auto sampling = std::make_shared<TaskSampling::s_LoadPresetSampling>();
    sampling->nFileID = id;
    sampling->pCurDevice = m.device();
    sampling->lastKeypadInfo = std::move(before);
    auto* const thread = TaskSampling::SamplingThread::instance();
    return thread->setSamplingType(TaskSampling::LoadPreset) && thread->appendData(sampling);
}

ProtoModel::File::s_KeypadInfo keypadOf(Model& m)
{
    const auto files = m.device()->files(FileType::keypad);
    const auto keypad =
        files.isEmpty() ? nullptr : std::dynamic_pointer_cast<BizModel::Keypad>(files.first().lock());
    return keypad ? keypad->keypadInfo() : ProtoModel::File::s_KeypadInfo();
}

} // namespace

class TestPresets : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void presetStoresTheSelectedScreensPreview();
    void presetIsRefused();
    void coveringStoresThePresentScenes();
    void loadingReplacesThePreviewOrTheProgram();
    void loadingIsRefusedWhileAScreenIsBusy();
    void deviceLoadMakesThePresetActive();
    void failedDeviceLoadPutsTheKeypadBack();
    void keypadTellsHistoryAndColours();
    void groupSharesItsPresets();
    void removingAndClearing();
    void editingIsRefusedDuringATransition();
    void savingWritesTheShow();
};

void TestPresets::presetStoresTheSelectedScreensPreview()
{
    Model m;
    QString error;
    QVERIFY(m.deviceControl()->createPresetFile(PVW, 5, error));
    QCOMPARE(m.log.names(), QStringList(QStringLiteral("signalPresetAdded")));
    const auto stored = preset(m, 5);
    QCOMPARE(stored->name(), QStringLiteral("Preset 5"));
    QCOMPARE(stored->fileType(), PVW);
    QCOMPARE(screensOf(stored).size(), 1);
    QCOMPARE(screensOf(stored).first().lock(), m.screen(1));
    // Without a selection all screens with outputs are stored.
    m.model.control().selectScreens(A, {});
    QVERIFY(m.deviceControl()->createPresetFile(PGM, 2, error));
    QCOMPARE(screensOf(preset(m, 2)).size(), 2);
    // Preview presets come first.
    QCOMPARE(m.device()->presets().first().lock()->presetDetail().id, quint16(5));
    QCOMPARE(m.device()->files(PVW).size(), 1);
    m.device()->setActivedPreset(stored, 5);
    QCOMPARE(m.device()->activedPresetKeyNo(), 5);
    QVERIFY(m.model.control().renamePreset(A, PVW, 5, QStringLiteral("Opening")));
    QCOMPARE(stored->presetDetail().name, QStringLiteral("Opening"));
    QCOMPARE(m.log.names().last(), QStringLiteral("signalNameChanged"));
}

void TestPresets::presetIsRefused()
{
    Model m;
    const auto refuse = [&](FileType type, quint16 id) {
        QString error;
        const bool refused = !m.deviceControl()->createPresetFile(type, id, error);
        return refused && !error.isEmpty();
    };
    QVERIFY(refuse(PVW, 0));
    QVERIFY(refuse(PVW, 129));
    QVERIFY(refuse(FileType::keypad, 1));
    QString error;
    QVERIFY(m.deviceControl()->createPresetFile(PVW, 128, error));
    QVERIFY(refuse(PVW, 128));
    m.model.operations().fail(Operation::CreatePresetFile, QStringLiteral("Full."), Times::Always);
    QVERIFY(refuse(PVW, 1));
    QVERIFY(refuse(PVW, 1));
    m.model.operations().clearOrders(Operation::CreatePresetFile);
    QVERIFY(m.deviceControl()->createPresetFile(PVW, 1, error));
    m.model.control().removeScreen(A, {ScreenType::RegularScreen, 1});
    m.model.control().removeScreen(A, {ScreenType::RegularScreen, 2});
    QVERIFY(refuse(PVW, 2));
    ModelControl::Preset::Screens screens;
    QVERIFY(!preset(m, 1)->presetSelectedScreens(screens, PVW, error));
}

void TestPresets::coveringStoresThePresentScenes()
{
    Model m;
    m.model.control().addPreset(A, PVW, 1);
    m.model.control().selectScreens(A, {{ScreenType::RegularScreen, 2}});
    m.log.clear();
    QString error;
    QVERIFY(control(m)->coverPreset(preset(m, 1), PVW, error));
    QCOMPARE(screensOf(preset(m, 1)).first().lock(), m.screen(2));
    QCOMPARE(m.log.names(), QStringList(QStringLiteral("signalPresetCovered")));
    m.model.operations().fail(Operation::CoverPreset, QStringLiteral("Locked."), Times::Once);
    QVERIFY(!control(m)->coverPreset(preset(m, 1), PVW, error));
    QCOMPARE(error, QStringLiteral("Locked."));
    QVERIFY(!control(m)->coverPreset({}, PVW, error));
}

void TestPresets::loadingReplacesThePreviewOrTheProgram()
{
    Model m;
    m.model.control().addPreset(A, PVW, 1);
    const ScreenKey first{ScreenType::RegularScreen, 1};
    m.model.control().removeLayer(A, first, SceneType::PVW, 1);
    m.model.control().removeInput(A, 2);
    m.log.clear();
    QString error;
    const auto stored = preset(m, 1);
    QVERIFY(control(m)->checkPresetData(stored, error));
    QVERIFY(control(m)->updatePresetModelData(stored, screensOf(stored), error));
    // What the device does not have any more is left out.
    QCOMPARE(m.sources(1, SceneType::PVW), (Ids{1, 0}));
    QCOMPARE(m.sources(1, SceneType::PGM), Ids{3});
    QCOMPARE(
        m.log.names(),
        QStringList(
            {QStringLiteral("signalDeviceScreenLayersChanged"),
             QStringLiteral("signalSelectedLayersChanged")}));
    m.model.control().setLoadToPGM(A, true);
    QVERIFY(control(m)->updatePresetModelData(stored, screensOf(stored), error));
    QCOMPARE(m.sources(1, SceneType::PGM), (Ids{1, 0}));
    QVERIFY(!control(m)->updatePresetModelData(stored, {m.screen(2)}, error));
    QVERIFY(!error.isEmpty());
}

void TestPresets::loadingIsRefusedWhileAScreenIsBusy()
{
    Model m;
    m.model.control().addPreset(A, PVW, 1);
    const auto stored = preset(m, 1);
    m.model.control().setScreenState(A, {ScreenType::RegularScreen, 1}, State::Taking);
    QString error;
    QVERIFY(!control(m)->checkPresetData(stored, error));
    QVERIFY(!error.isEmpty());
    m.log.clear();
    QVERIFY(!control(m)->updatePresetModelData(stored, screensOf(stored), error));
    QCOMPARE(m.log.names(), QStringList());
    m.model.control().setScreenState(A, {ScreenType::RegularScreen, 1}, State::Normal);
    m.model.operations().fail(Operation::CheckPresetData, QStringLiteral("Damaged."), Times::Once);
    QVERIFY(!control(m)->checkPresetData(stored, error));
    QCOMPARE(error, QStringLiteral("Damaged."));
    m.model.control().removePreset(A, PVW, 1);
    QVERIFY(!control(m)->checkPresetData(stored, error));
    ProtoModel::File::s_KeypadInfo info;
    QVERIFY(!control(m)->createKeypadInfo(stored, {}, info));
}

void TestPresets::deviceLoadMakesThePresetActive()
{
    Model m;
    for (const quint16 id : {1, 2})
        m.model.control().addPreset(A, PVW, id);
    QVERIFY(sampleLoad(m, 2));
    QVERIFY(m.log.waitFor(QStringLiteral("signalActivedPresetKeyNoChanged")));
    QCOMPARE(m.device()->activedPreset().lock(), preset(m, 2));
    m.model.control().removePreset(A, PVW, 2);
    QCOMPARE(m.device()->activedPresetKeyNo(), 0);
    QCOMPARE(m.log.count(QStringLiteral("signalActivedPresetKeyNoChanged")), 2);
    QVERIFY(!TaskSampling::SamplingThread::instance()->appendData(
        std::shared_ptr<TaskSampling::s_LoadPresetSampling>()));
}

void TestPresets::failedDeviceLoadPutsTheKeypadBack()
{
    Model m;
    m.model.control().addPreset(A, PVW, 1);
    ProtoModel::File::s_KeypadInfo before;
    before.keypadArray += {2, 0, 7, 5};
    m.model.operations().fail(Operation::SampleLoadPreset, QStringLiteral("No answer."), Times::Once);
    QVERIFY(sampleLoad(m, 1, before));
    QVERIFY(m.log.waitFor(QStringLiteral("signalKeypadChanged")));
    QVERIFY(keypadOf(m) == before);
    QCOMPARE(m.device()->activedPresetKeyNo(), 0);
}

void TestPresets::keypadTellsHistoryAndColours()
{
    Model m;
    for (const quint16 id : {1, 2, 3})
        m.model.control().addPreset(A, PVW, id);
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
    m.model.control().setLoadToPGM(A, true);
    load(1);
    info = keypadOf(m);
    QCOMPARE(info.presetInfo.beforeOnePreset, quint8(0));
    QCOMPARE(info.presetInfo.lastPVWPreset, quint8(3));
    QCOMPARE(info.presetInfo.lastPGMPreset, quint8(1));
    QCOMPARE(m.log.count(QStringLiteral("signalKeypadChanged")), 3);
}

void TestPresets::groupSharesItsPresets()
{
    Model m;
    for (const QString& device : {A, B})
        m.model.control().setGroup(device, QStringLiteral("7"));
    m.model.control().addPreset(A, PVW, 1);
    m.model.control().addPreset(B, PVW, 1);
    m.model.control().addPreset(B, PVW, 9);
    const ScreenKey first{ScreenType::RegularScreen, 1};
    m.model.control().removeLayer(B, first, SceneType::PVW, 1);
    const auto presets = m.model.deviceList().groupDevicePresets(m.device(B));
    QCOMPARE(presets.size(), 3);
    QVERIFY(presets.first().lock() == preset(m, 1, B)); // the device's own come first
    QString error;
    QVERIFY(control(m)->updatePresetModelData(preset(m, 1), screensOf(preset(m, 1)), error));
    QCOMPARE(m.sources(1, SceneType::PVW, B), Ids{1});
    // A preset that only the other device has is active on both once it is loaded.
    QVERIFY(sampleLoad(m, 9));
    QVERIFY(m.log.waitFor(QStringLiteral("signalActivedPresetKeyNoChanged"), 2));
    QCOMPARE(m.device()->activedPresetKeyNo(), 9);
    QStringList faults;
    QVERIFY(parseShow(m.model.show(), faults).has_value());
    QVERIFY(m.deviceControl()->removeFile({preset(m, 9, B)}, error));
    QCOMPARE(m.device()->activedPresetKeyNo(), 0);
    QVERIFY(!preset(m, 9, B));
}

void TestPresets::removingAndClearing()
{
    Model m;
    m.model.control().addPreset(A, PVW, 1);
    m.model.control().addPreset(A, PGM, 2);
    QString error;
    const auto first = preset(m, 1);
    QVERIFY(m.deviceControl()->removeFile({first}, error));
    QVERIFY(!m.deviceControl()->removeFile({first}, error) && !error.isEmpty());
    m.model.control().addPreset(A, PVW, 1);
    m.model.control().activatePreset(A, PVW, 1);
    m.device()->addKeypadFile(std::make_shared<BizModel::Keypad>(ProtoModel::File::s_KeypadInfo()));
    m.log.clear();
    const auto remove = [&](const QList<FileType>& types) {
        Outcome outcome;
        AsyncManager::instance()->startAsyncRequest(AsyncRemoveFile{m.device(), types, outcome.completion()});
        outcome.wait();
        return outcome.ok();
    };
    QVERIFY(remove({PGM}));
    QCOMPARE(m.device()->presets().size(), 1);
    QVERIFY(remove({PVW, PGM}));
    QCOMPARE(
        m.log.names(),
        QStringList(
            {QStringLiteral("signalPresetRemoved"), QStringLiteral("signalPresetCleared"),
             QStringLiteral("signalActivedPresetKeyNoChanged")}));
    QVERIFY(m.device()->presets().isEmpty());
    QVERIFY(remove({FileType::keypad}));
    QVERIFY(m.device()->files(FileType::keypad).isEmpty());
    m.model.operations().fail(Operation::AsyncRemoveFile, QString(), Times::Once);
    QVERIFY(!remove({PVW, PGM}));
}

void TestPresets::editingIsRefusedDuringATransition()
{
    Model m;
    const QString text = QStringLiteral("can't create PVW preset");
    QString error;
    QVERIFY(m.device()->editPresetValidityCheck(text, error));
    for (const State busy : {State::Taking, State::Tbar_taking, State::MatchingPGM}) {
        m.model.control().setScreenState(A, {ScreenType::RegularScreen, 2}, busy);
        QVERIFY(!m.device()->editPresetValidityCheck(text, error));
        QVERIFY(error.startsWith(text) && error.size() > text.size());
    }
    m.model.control().setScreenState(A, {ScreenType::RegularScreen, 2}, State::Resource_out);
    QVERIFY(m.device()->editPresetValidityCheck(text, error));
    m.model.operations().fail(Operation::EditPresetValidityCheck, QStringLiteral("busy"), Times::Once);
    QVERIFY(!m.device()->editPresetValidityCheck(text, error));
    QVERIFY(error.endsWith(QStringLiteral("busy")));
}

void TestPresets::savingWritesTheShow()
{
    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("show.json"));
    Model m;
    const auto save = [&m] {
        Outcome outcome;
        AsyncManager::instance()->startAsyncRequest(AsyncSaveDeviceData{m.device(), outcome.completion()});
        outcome.wait();
        return outcome;
    };
    QVERIFY(!save().ok());
    m.model.setShowFile(path);
    m.model.control().renameScreen(A, {ScreenType::RegularScreen, 1}, QStringLiteral("Wall"));
    QVERIFY(save().ok());
    QStringList faults;
    const auto written = loadShowFile(path, faults);
    QVERIFY(written.has_value());
    QCOMPARE(written->devices[0].screens[0].name, QStringLiteral("Wall"));

    const QByteArray saved = m.model.show();
    m.model.operations().fail(Operation::AsyncSaveDeviceData, QStringLiteral("Disk full."), Times::Once);
    QCOMPARE(save().text(), QStringLiteral("Disk full."));
    m.model.setShowFile(directory.filePath(QStringLiteral("nowhere/show.json")));
    const Outcome unwritable = save();
    QVERIFY(!unwritable.ok() && unwritable.text().contains(QStringLiteral("nowhere")));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), saved);
    QCOMPARE(QDir(directory.path()).entryList(QDir::Files), QStringList(QStringLiteral("show.json")));
}

QTEST_GUILESS_MAIN(TestPresets)
#include "tst_presets.moc"
