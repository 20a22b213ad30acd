#include "bareplatform.h"

#include "bizmodel/devicelist.h"
#include "bizmodel/resourcecheck.h"
#include "logcapture.h"
#include "modelcontrol/asyncmanager.h"
#include "modelcontrol/device.h"
#include "modelcontrol/layer.h"
#include "modelcontrol/preset.h"
#include "modelcontrol/screen.h"
#include "modelparts.h"
#include "parallelcontrol/parallelmanager.h"
#include "tasksampling/samplingthread.h"

#include <QMetaMethod>
#include <QtTest>

using namespace Orvane;
using namespace Orvane::BizModel;

namespace {

class DeviceControl : public ModelControl::Device {
public:
    explicit DeviceControl(const std::weak_ptr<BizModel::Device>& device)
        : Device(device)
    {
    }
    void setActivedScreen(const std::weak_ptr<Screen>&) override { }
};

} // namespace

class TestDeviceList : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // A queued connection is refused at run time when one argument's type is unknown.
    void everySignalCanCrossThreads()
    {
        const TestSupport::BareDeviceList list;
        const QMetaObject& meta = DeviceList::staticMetaObject;
        int found = 0;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            const QMetaMethod method = meta.method(i);
            for (const QByteArray& type : method.parameterTypes())
                QVERIFY2(QMetaType::type(type) != QMetaType::UnknownType, method.methodSignature());
            found += method.methodType() == QMetaMethod::Signal;
        }
        QCOMPARE(found, 43);
    }

    void theObjectInstalledLastIsTheInstance()
    {
        auto first = std::make_unique<TestSupport::BareDeviceList>();
        auto second = std::make_unique<TestSupport::BareDeviceList>();
        auto third = std::make_unique<TestSupport::BareDeviceList>();
        first.reset();
        QCOMPARE(DeviceList::instance(), third.get());
        third.reset();
        QCOMPARE(DeviceList::instance(), second.get());
        second.reset();
        QVERIFY(!DeviceList::instance());
    }

    void aMissingPartOfTheModelIsNamedOnce()
    {
        const auto ask = [] {
            const std::weak_ptr<Device> device;
            return ModelControl::Device::create(device)
                || ModelControl::Device::screenModelControl(Enum::Screen::RegularScreen, device)
                || ModelControl::Screen::layerModelControl(LayerType::Regular, device)
                || ModelControl::Preset::create(device) || ModelControl::AsyncManager::instance()
                || ParallelControl::ParallelManager::instance() || TaskSampling::SamplingThread::instance();
        };
        for (const char* name :
             {"ControllerFactory", "AsyncManager", "ParallelManager", "SamplingThread", "ResourceCheck"}) {
            QTest::ignoreMessage(
                QtWarningMsg, QRegularExpression(QStringLiteral("^No %1 is installed: .+\\.$").arg(name)));
        }
        QVERIFY(!ask());
        // A check that nobody installed finds enough.
        const auto screen = std::make_shared<TestSupport::BareScreen>(1);
        QVERIFY(ResourceCheck::CheckOperationResources(screen, {}));
        QVERIFY(!ResourceCheck::CheckOperationResources(nullptr, {}));

        const TestSupport::LogCapture log;
        QVERIFY(!ask());
        // There was a device list: it has not been forgotten, the application is ending.
        QVERIFY(!DeviceList::instance());
        QCOMPARE(log.all(), QString());
    }

    void whatAModelDoesNotSayOfTakesAndGroupsFollowsFromItsScreens()
    {
        using State = Screen::State;
        const TestSupport::BareDeviceList list;
        const auto device = std::make_shared<TestSupport::BareDevice>();
        const DeviceControl control(device);
        QVERIFY(!control.takeCutEnabled()); // nothing to take
        const int mask = Enum::Screen::RegularAndAUXScreens;
        for (const quint32 id : {1, 2})
            device->m_screens += std::make_shared<TestSupport::BareScreen>(id);
        const auto& second = device->m_screens[1];
        second->m_bSelected = true;
        QVERIFY(device->isScreenSelected(second) && !device->isScreenSelected(device->m_screens[0]));
        QCOMPARE(control.getTakeScreens(mask, {}, true).size(), 1);
        QCOMPARE(control.getTakeScreens(mask, {}, false).size(), 2);
        for (const State state :
             {State::Taking, State::Cut, State::Tbar_taking, State::MatchingPGM, State::Resource_out}) {
            second->m_state = state;
            QCOMPARE(control.takeCutEnabled(), state == State::Resource_out);
            QCOMPARE(device->isTaking(), state == State::Taking);
        }
        // A device that belongs to no group is one by itself.
        QCOMPARE(list.groupDevices(std::weak_ptr<Device>(device), true, false).size(), 1);
        QCOMPARE(list.groupDevices(std::weak_ptr<Device>(), true, false).size(), 0);
    }

    void theSummaryNamesWhatIsThereAndWhatIsMissing()
    {
        const TestSupport::BareDeviceList list;
        QTest::ignoreMessage(
            QtWarningMsg,
            QRegularExpression(
                QStringLiteral("^Model parts installed: DeviceList\\. Missing: AsyncManager \\(.+; "
                               "ParallelManager \\(take, .+; SamplingThread \\(.+\\)\\.$")));
        ModelParts::logSummary();
    }
};

QTEST_GUILESS_MAIN(TestDeviceList)
#include "tst_devicelist.moc"
