#include "bareplatform.h"

#include "bizmodel/device.h"
#include "bizmodel/devicelist.h"
#include "bizmodel/ids.h"
#include "bizmodel/keypad.h"
#include "bizmodel/resourcecheck.h"
#include "bizmodel/screen.h"
#include "modelcontrol/device.h"
#include "modelcontrol/layer.h"
#include "modelcontrol/preset.h"
#include "modelcontrol/screen.h"

#include <QMetaMethod>
#include <QtTest>

#include <thread>
#include <vector>

using namespace Orvane;
using namespace Orvane::BizModel;

namespace {

/// Counts what arrives from any signal connected to it, without a slot of the right type for each.
class AnyReceiver : public QObject {
public:
    QHash<int, int> m_arrivals;
    bool m_onOwnThread = true;

    bool connectTo(const QObject* sender, int signal)
    {
        const int firstSlot = QObject::staticMetaObject.methodCount();
        return QMetaObject::connect(sender, signal, this, firstSlot + signal, Qt::QueuedConnection);
    }

    int qt_metacall(QMetaObject::Call call, int id, void** arguments) override
    {
        id = QObject::qt_metacall(call, id, arguments);
        if (id < 0 || call != QMetaObject::InvokeMetaMethod)
            return id;
        ++m_arrivals[id];
        m_onOwnThread = m_onOwnThread && QThread::currentThread() == thread();
        return -1;
    }
};

/// Emits the signal with one empty value of each argument's type.
bool emitSignal(QObject* sender, const QMetaMethod& signal)
{
    std::vector<QVariant> values;
    QGenericArgument arguments[10];
    const QList<QByteArray> types = signal.parameterTypes();
    values.reserve(static_cast<size_t>(types.size()));
    for (int i = 0; i < types.size(); ++i) {
        const int type = QMetaType::type(types.at(i));
        if (type == QMetaType::UnknownType)
            return false;
        values.emplace_back(type, nullptr);
        arguments[i] = QGenericArgument(types.at(i), values.back().constData());
    }
    return signal.invoke(
        sender, Qt::DirectConnection, arguments[0], arguments[1], arguments[2], arguments[3]);
}

QList<QMetaMethod> signalsOfDeviceList()
{
    QList<QMetaMethod> found;
    const QMetaObject& meta = DeviceList::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Signal)
            found.append(meta.method(i));
    }
    return found;
}

} // namespace

class TestDeviceList : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everySignalCrossesThreads();
    void argumentsCrossThreadsWhole();
    void theObjectInstalledLastIsTheInstance();
    void withoutAHostThereIsNothingToWorkWith();
    void aKeypadFileKnowsItsColours();
};

void TestDeviceList::everySignalCrossesThreads()
{
    TestSupport::BareDeviceList list;
    AnyReceiver receiver;
    const QList<QMetaMethod> all = signalsOfDeviceList();
    QCOMPARE(all.size(), 43);
    for (const QMetaMethod& signal : all)
        QVERIFY2(receiver.connectTo(&list, signal.methodIndex()), signal.methodSignature());

    QByteArray notEmitted;
    std::thread emitter([&] {
        for (const QMetaMethod& signal : all) {
            if (!emitSignal(&list, signal))
                notEmitted += signal.methodSignature() + ' ';
        }
    });
    emitter.join();

    QCOMPARE(notEmitted, QByteArray());
    QCoreApplication::sendPostedEvents(&receiver);
    for (const QMetaMethod& signal : all)
        QVERIFY2(receiver.m_arrivals.value(signal.methodIndex()) == 1, signal.methodSignature());
    QVERIFY(receiver.m_onOwnThread);
}

void TestDeviceList::argumentsCrossThreadsWhole()
{
    TestSupport::BareDeviceList list;
    QSignalSpy layersChanged(&list, &DeviceList::signalDeviceScreenLayersChanged);
    QSignalSpy messageShown(&list, &DeviceList::signalShowStatusBarMsg);
    std::shared_ptr<File> renamed;
    QObject context;
    connect(
        &list, &DeviceList::signalNameChanged, &context,
        [&](const std::weak_ptr<Device>&, const std::weak_ptr<File>& file) { renamed = file.lock(); },
        Qt::QueuedConnection);

    const auto keypad = std::make_shared<Keypad>(ProtoModel::File::s_KeypadInfo());
    std::thread([&] { Q_EMIT list.signalNameChanged({}, keypad); }).join();
    QTRY_COMPARE(renamed, std::shared_ptr<File>(keypad));

    Q_EMIT list.signalDeviceScreenLayersChanged({std::weak_ptr<Screen>(), std::weak_ptr<Screen>()}, 3);
    QCOMPARE(layersChanged.takeFirst().first().value<QList<std::weak_ptr<Screen>>>().size(), 2);
    Q_EMIT list.signalShowStatusBarMsg(StatusBarMsgType::Error, QStringLiteral("x"), 3000);
    QCOMPARE(messageShown.takeFirst().first().value<StatusBarMsgType>(), StatusBarMsgType::Error);
}

void TestDeviceList::theObjectInstalledLastIsTheInstance()
{
    QCOMPARE(DeviceList::instance(), nullptr);
    auto first = std::make_unique<TestSupport::BareDeviceList>();
    QCOMPARE(DeviceList::instance(), first.get());
    auto second = std::make_unique<TestSupport::BareDeviceList>();
    QCOMPARE(DeviceList::instance(), second.get());
    first.reset();
    QCOMPARE(DeviceList::instance(), second.get());
    second.reset();
    QCOMPARE(DeviceList::instance(), nullptr);
}

void TestDeviceList::withoutAHostThereIsNothingToWorkWith()
{
    const std::weak_ptr<Device> device;
    QVERIFY(!ModelControl::Device::create(device));
    QVERIFY(!ModelControl::Device::screenModelControl(Enum::Screen::RegularScreen, device));
    QVERIFY(!ModelControl::Screen::layerModelControl(LayerType::Regular, device));
    QVERIFY(!ModelControl::Preset::create(device));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^No resource check is installed")));
    QVERIFY(!ResourceCheck::CheckOperationResources(nullptr, {}, {}, SceneType::PVW, {}));
}

void TestDeviceList::aKeypadFileKnowsItsColours()
{
    ProtoModel::File::s_KeypadInfo info;
    info.keypadArray = {{1, 2, 36, 0}, {1, 2, 37, 3}};
    const std::shared_ptr<File> file = std::make_shared<Keypad>(info);

    const auto keypad = std::dynamic_pointer_cast<Keypad>(file);

    QVERIFY(keypad);
    QCOMPARE(keypad->fileType(), File::FileType::keypad);
    QVERIFY(keypad->keypadInfo() == info);
    QCOMPARE(keypad->buttonColor(36), std::optional<quint8>(0));
    QCOMPARE(keypad->buttonColor(37), std::optional<quint8>(3));
    QCOMPARE(keypad->buttonColor(35), std::optional<quint8>());
}

QTEST_GUILESS_MAIN(TestDeviceList)
#include "tst_devicelist.moc"
