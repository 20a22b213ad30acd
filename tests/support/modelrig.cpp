#include "modelrig.h"

#include "memorydevicelist.h"
#include "showfile.h"

#include <QTest>

#include <algorithm>

namespace Orvane::TestSupport {

using BizModel::DeviceList;
using MemoryModel::JournalEntry;

ModelRig::ModelRig(const std::shared_ptr<EC::s_ECKeyboardConfig>& keyboard, std::unique_ptr<ConsoleWire> wire)
    : m_pModel(std::make_unique<MemoryModel::MemoryModel>())
{
    connectNotices();
    operations().setListener([this](const JournalEntry& entry) {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_journal.push_back(entry);
        if (entry.phase == JournalEntry::Phase::Started)
            m_letGo.wait(lock, [&] { return entry.operation != m_held; });
    });
    m_pConsole = std::make_unique<ConsoleRig>(keyboard, std::move(wire));
}

ModelRig::~ModelRig()
{
    letGo();
    m_pConsole.reset();
    m_pModel.reset();
}

void ModelRig::connectNotices()
{
    const auto notice = [this](auto signal, auto text) {
        QObject::connect(
            &m_pModel->deviceList(), signal, &m_context,
            [this, text](const auto&... arguments) { addNotice(text(arguments...)); }, Qt::DirectConnection);
    };
    notice(
        &DeviceList::signalShowStatusBarMsg,
        [](BizModel::StatusBarMsgType type, const QString& text, int durationMs) {
            return QStringLiteral("status %1 %2 %3").arg(int(type)).arg(durationMs).arg(text);
        });
    notice(
        &DeviceList::signalShowFramelessMessageBoxMsg,
        [](BizModel::FramelessMessageBoxMsgType type, const QString& text) {
            return QStringLiteral("box %1 %2").arg(int(type)).arg(text);
        });
    notice(&DeviceList::signalShowWaitingDialog, [](const QString& text) { return "wait " + text; });
    notice(&DeviceList::signalHideWaitingDialog, [] { return QStringLiteral("hide"); });
}

void ModelRig::addNotice(const QString& text)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_notices.push_back({text, Clock::now()});
}

bool ModelRig::load(const MemoryModel::ShowRecord& show)
{
    QStringList faults;
    const bool loaded = m_pModel->load(MemoryModel::writeShow(show), faults);
    if (!loaded)
        qWarning("The test's show is broken: %s", qUtf8Printable(faults.join(QLatin1Char('\n'))));
    return loaded && m_pConsole->settle();
}

std::shared_ptr<BizModel::Device> ModelRig::device(const QString& ipMacSn) const
{
    const auto devices = m_pModel->deviceList().devices();
    for (const auto& weakDevice : devices) {
        auto each = weakDevice.lock();
        if (each && each->ipMacSn() == ipMacSn)
            return each;
    }
    return nullptr;
}

std::shared_ptr<BizModel::Screen> ModelRig::screen(const QString& ipMacSn, MemoryModel::ScreenKey key) const
{
    const auto owner = device(ipMacSn);
    const auto screens = owner ? owner->screens(key.type) : QList<std::weak_ptr<BizModel::Screen>>();
    for (const auto& weakScreen : screens) {
        auto each = weakScreen.lock();
        if (each && each->screenId() == key.id)
            return each;
    }
    return nullptr;
}

QStringList ModelRig::asked(MemoryModel::Operation operation, bool onlyRequests) const
{
    const QString name = MemoryModel::operationName(operation);
    const std::lock_guard<std::mutex> lock(m_mutex);
    QStringList requested;
    QStringList done;
    for (const JournalEntry& entry : m_journal) {
        if (entry.operation == name)
            (entry.phase == JournalEntry::Phase::Requested ? requested : done).append(entry.arguments);
    }
    return onlyRequests || !requested.isEmpty() ? requested : done;
}

bool ModelRig::waitAsked(MemoryModel::Operation operation, int count, int timeoutMs) const
{
    return QTest::qWaitFor([&] { return asked(operation).size() >= count; }, timeoutMs);
}

void ModelRig::hold(MemoryModel::Operation operation)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_held = MemoryModel::operationName(operation);
}

void ModelRig::letGo()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_held.clear();
    m_letGo.notify_all();
}

std::vector<ModelRig::Notice> ModelRig::notices() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_notices;
}

int ModelRig::countNotices(const QString& text) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return int(std::count_if(
        m_notices.cbegin(), m_notices.cend(), [&](const Notice& notice) { return notice.text == text; }));
}

bool ModelRig::waitNotice(const QString& text, int count, int timeoutMs) const
{
    return QTest::qWaitFor([&] { return countNotices(text) >= count; }, timeoutMs);
}

void ModelRig::forget()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_journal.clear();
    m_notices.clear();
}

} // namespace Orvane::TestSupport
