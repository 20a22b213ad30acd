#include "signallog_p.h"

#include <QMetaMethod>

#include <algorithm>
#include <tuple>
#include <utility>

namespace Orvane::ModelTest::Internal {

using BizModel::DeviceList;

namespace {

const QMetaObject& listMeta = DeviceList::staticMetaObject;

template <typename T> std::shared_ptr<const void> objectOf(const std::weak_ptr<T>& object)
{
    return object.lock();
}

template <typename T> std::shared_ptr<const void> objectOf(const std::shared_ptr<T>& object)
{
    return object;
}

} // namespace

int SignalWindow::times(const QString& signal, const void* object) const
{
    const std::lock_guard lock(m_mutex);
    return m_counts.value({signal, object});
}

int SignalWindow::times(const QString& signal) const
{
    return times(signal, nullptr);
}

void SignalWindow::add(const QString& signal, const void* object)
{
    const std::lock_guard lock(m_mutex);
    ++m_counts[{signal, object}];
}

SignalLog::SignalLog(
    DeviceList& model, std::function<void(const QString&)> delivered,
    std::function<void(const ModelFault&)> found)
    : m_delivered(std::move(delivered))
    , m_found(std::move(found))
{
    watchObjects(model);
    // As a signal spy does it: a receiver whose every method, by its number, is the list's signal. After
    // the objects, which the windows then know of.
    for (int index = QObject::staticMetaObject.methodCount(); index < listMeta.methodCount(); ++index) {
        if (listMeta.method(index).methodType() == QMetaMethod::Signal)
            QMetaObject::connect(&model, index, this, index, Qt::DirectConnection);
    }
}

quint64 SignalLog::count() const
{
    const std::lock_guard lock(m_mutex);
    return m_nSignals;
}

bool SignalLog::cameSince(const QString& signal, quint64 count) const
{
    const std::lock_guard lock(m_mutex);
    return m_lastSignals.value(signal) > count;
}

std::shared_ptr<const SignalWindow> SignalLog::open()
{
    const auto window = std::make_shared<SignalWindow>();
    const std::lock_guard lock(m_mutex);
    m_windows.push_back(window);
    return window;
}

int SignalLog::qt_metacall(QMetaObject::Call call, int id, void** arguments)
{
    const int own = QObject::qt_metacall(call, id, arguments);
    if (own >= 0 && call == QMetaObject::InvokeMetaMethod)
        came(QString::fromLatin1(listMeta.method(id).name()));
    return own;
}

void SignalLog::came(const QString& signal)
{
    {
        const std::lock_guard lock(m_mutex);
        m_lastSignals[signal] = ++m_nSignals;
        addToWindows(signal, nullptr);
    }
    m_delivered(signal);
}

/// With the mutex held; windows that have ended are dropped.
void SignalLog::addToWindows(const QString& signal, const void* object)
{
    for (auto window = m_windows.begin(); window != m_windows.end();) {
        if (const auto open = window->lock()) {
            open->add(signal, object);
            ++window;
        } else {
            window = m_windows.erase(window);
        }
    }
}

void SignalLog::watchObjects(DeviceList& model)
{
    const auto watch = [&](auto signal) {
        const QString name = QString::fromLatin1(QMetaMethod::fromSignal(signal).name());
        connect(
            &model, signal, this,
            [this, name](const auto&... arguments) {
                named(name, objectOf(std::get<sizeof...(arguments) - 1>(std::tie(arguments...))));
            },
            Qt::DirectConnection);
    };
    watch(&DeviceList::signalDeviceRemoved);
    watch(&DeviceList::signalScreenAdded);
    watch(&DeviceList::signalScreenRemoved);
    watch(&DeviceList::signalScreenNameChanged);
    watch(&DeviceList::signalScreenIndexChanged);
    watch(&DeviceList::signalScreenPGMFreezeChanged);
    watch(&DeviceList::signalScreenFTBChanged);
    watch(&DeviceList::signalScreenPGMEditChanged);
    watch(&DeviceList::signalScreenEffectChanged);
    watch(&DeviceList::signalSwapStateChanged);
    watch(&DeviceList::signalLoadToPGMStateChanged);
    watch(&DeviceList::signalLayerAdded);
    watch(&DeviceList::signalLayerRemoved);
    watch(&DeviceList::signalLayerNameChanged);
    watch(&DeviceList::signalLayerSourceChanged);
    watch(&DeviceList::signalInputAdded);
    watch(&DeviceList::signalInputRemoved);
    watch(&DeviceList::signalInterfaceNameChanged);
    watch(&DeviceList::signalInterfaceSignalChanged);
    watch(&DeviceList::signalInterfaceOverLoadChanged);
    watch(&DeviceList::signalPresetAdded);
    watch(&DeviceList::signalPresetRemoved);
    watch(&DeviceList::signalPresetCovered);
    watch(&DeviceList::signalPresetCleared);
    watch(&DeviceList::signalNameChanged);
}

void SignalLog::named(const QString& signal, const std::shared_ptr<const void>& object)
{
    if (!object)
        return;
    QString rule;
    QString seen;
    {
        const std::lock_guard lock(m_mutex);
        addToWindows(signal, object.get());
        seen = findFault(lifeOf(object), signal, rule);
    }
    if (!seen.isEmpty())
        m_found({rule, signal, seen});
}

QString SignalLog::findFault(Life& life, const QString& signal, QString& rule)
{
    const bool adds = signal.endsWith(QLatin1String("Added"));
    const bool removes = signal.endsWith(QLatin1String("Removed"));
    const QString before = std::exchange(life.named, signal);
    const bool wasAdded = life.isAdded;
    const bool wasRemoved = life.isRemoved;
    life.isAdded = adds || (wasAdded && !removes);
    life.isRemoved = removes || (wasRemoved && !adds);
    rule = QStringLiteral("signal-once");
    if ((adds && wasAdded) || (removes && wasRemoved))
        return QStringLiteral("It came twice for the same object.");
    rule = QStringLiteral("signals-in-order");
    if (adds && !before.isEmpty() && !wasRemoved)
        return QStringLiteral("It came after %1, which named the object already.").arg(before);
    // Another thread may have changed the object before it was removed, and say so after.
    if (wasRemoved && !adds && life.removedOn == std::this_thread::get_id())
        return QStringLiteral("It names an object whose removal has been announced.");
    if (removes)
        life.removedOn = std::this_thread::get_id();
    return {};
}

/// The entry of the object; those of objects that are gone are dropped.
SignalLog::Life& SignalLog::lifeOf(const std::shared_ptr<const void>& object)
{
    m_lives.remove_if([](const Life& life) { return life.object.expired(); });
    const auto known = std::find_if(
        m_lives.begin(), m_lives.end(), [&object](const Life& life) { return life.object.lock() == object; });
    if (known != m_lives.end())
        return *known;
    m_lives.push_back({object, {}, false, false, {}});
    return m_lives.back();
}

} // namespace Orvane::ModelTest::Internal
