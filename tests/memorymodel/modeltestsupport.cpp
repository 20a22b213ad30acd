#include "modeltestsupport.h"

#include "showfile.h"

#include <QtTest>

namespace Orvane::MemoryModel::Test {

using BizModel::CapacityMode;
using BizModel::SceneType;

LayerRecord layerRecord(quint32 id, quint32 inputId, const QRect& window)
{
    LayerRecord layer;
    layer.id = id;
    layer.name = QStringLiteral("Layer %1").arg(id);
    layer.inputId = inputId;
    layer.window = window;
    return layer;
}

ShowRecord smallShow()
{
    const QSize hd(1920, 1080);
    const auto screen = [](ScreenType type, quint32 id) {
        ScreenRecord record;
        record.key = {type, id};
        record.name = QStringLiteral("Screen %1").arg(id);
        record.effectSeconds = 0.05;
        return record;
    };
    DeviceRecord a;
    a.ipMacSn = "A";
    a.groupId = "0";
    a.multiScreens = true;
    a.limits = {4, 2, 8};
    a.subcards = {
        {1, 0, {{1, CapacityMode::_SL}, {2, CapacityMode::_DL}, {3, CapacityMode::_4K}}}, {2, 8, {}}};
    a.inputs = {
        {1, "In 1", 1, 1, CapacityMode::_SL, true, false},
        {2, "In 2", 1, 2, CapacityMode::_DL, true, false},
        {3, "In 3", 1, 3, CapacityMode::_4K, false, false}};
    a.outputs = {{1, 2, 0, hd, true}, {2, 2, 1, hd, true}, {3, 2, 2, hd, true}};
    ScreenRecord first = screen(ScreenType::RegularScreen, 1);
    first.selected = true;
    first.outputs = {{1, QRect(QPoint(0, 0), hd)}, {2, QRect(QPoint(1920, 0), hd)}};
    first.pvw = {layerRecord(1, 1), layerRecord(2, 2, QRect(1920, 0, 960, 540))};
    first.pgm = {layerRecord(1, 3)};
    ScreenRecord second = screen(ScreenType::RegularScreen, 2);
    second.outputs = {{3, QRect(QPoint(0, 0), hd)}};
    second.pvw = {layerRecord(1, 2)};
    a.screens = {first, second, screen(ScreenType::RegularScreen, 3), screen(ScreenType::AUXScreen, 1)};
    a.activeScreen = first.key;

    DeviceRecord b;
    b.ipMacSn = "B";
    b.groupId = "0";
    b.subcards = {{1, 8, {{1, CapacityMode::_SL}}}};
    b.inputs = {{1, "In B", 1, 1, CapacityMode::_SL, true, false}};
    b.outputs = {{1, 1, 0, hd, true}};
    ScreenRecord only = screen(ScreenType::RegularScreen, 1);
    only.selected = true;
    only.outputs = {{1, QRect(QPoint(0, 0), hd)}};
    only.pvw = {layerRecord(1, 1)};
    b.screens = {only};
    b.activeScreen = only.key;
    return {"A", {a, b}};
}

static const QMetaObject& s_listMeta = BizModel::DeviceList::staticMetaObject;

SignalLog::SignalLog(BizModel::DeviceList& list)
{
    // As a signal spy does it: a receiver whose every method, by its number, is the list's signal.
    for (int index = QObject::staticMetaObject.methodCount(); index < s_listMeta.methodCount(); ++index) {
        if (s_listMeta.method(index).methodType() == QMetaMethod::Signal)
            QMetaObject::connect(&list, index, this, index, Qt::DirectConnection);
    }
}

int SignalLog::qt_metacall(QMetaObject::Call call, int id, void** arguments)
{
    const int own = QObject::qt_metacall(call, id, arguments);
    if (own >= 0 && call == QMetaObject::InvokeMetaMethod)
        add(s_listMeta.method(id).name());
    return own;
}

void SignalLog::add(const QByteArray& name)
{
    const std::lock_guard lock(m_mutex);
    m_names += QString::fromLatin1(name);
    m_added.notify_all();
}

QStringList SignalLog::names() const
{
    const std::lock_guard lock(m_mutex);
    return m_names;
}

void SignalLog::clear()
{
    const std::lock_guard lock(m_mutex);
    m_names.clear();
}

bool SignalLog::waitFor(const QString& name)
{
    std::unique_lock lock(m_mutex);
    return m_added.wait_for(lock, std::chrono::milliseconds(WaitMs), [&] { return m_names.contains(name); });
}

std::function<void(bool, QString)> Outcome::completion() const
{
    return [state = m_p](bool ok, const QString& text) {
        const std::lock_guard lock(state->mutex);
        ++state->calls;
        state->ok = ok;
        state->text = text;
        state->ended.notify_all();
    };
}

bool Outcome::wait() const
{
    std::unique_lock lock(m_p->mutex);
    return m_p->ended.wait_for(lock, std::chrono::milliseconds(WaitMs), [this] { return m_p->calls > 0; });
}

Model::Model(const ShowRecord& show)
{
    QStringList faults;
    if (!model.load(writeShow(show), faults))
        qFatal("The test's show has faults: %s", qUtf8Printable(faults.join(QLatin1Char('\n'))));
    log.clear();
}

std::shared_ptr<BizModel::Device> Model::device(const QString& ipMacSn)
{
    return find(model.deviceList().devices(), [&](const auto& each) { return each.ipMacSn() == ipMacSn; });
}

std::shared_ptr<BizModel::Screen> Model::screen(quint32 id, ScreenType type, const QString& device)
{
    return find(this->device(device)->screens(type), [&](const auto& each) { return each.screenId() == id; });
}

QList<quint32> Model::sources(quint32 screen, SceneType scene, const QString& device)
{
    QList<quint32> ids;
    const auto layers = this->screen(screen, ScreenType::RegularScreen, device)
                            ->layers(scene, BizModel::LayerType::AllLayerType);
    for (const auto& weak : layers) {
        if (const auto layer = weak.lock())
            ids += layer->sourceId();
    }
    return ids;
}

bool Model::waitForState(quint32 screen, BizModel::Screen::State state)
{
    const auto present = this->screen(screen);
    return waitUntil([&] { return present->state() == state; });
}

bool waitUntil(const std::function<bool()>& condition)
{
    return QTest::qWaitFor(condition, WaitMs);
}

} // namespace Orvane::MemoryModel::Test
