#include "presetextensions_p.h"

#include "ipresetcommandex_p.h"
#include "log_p.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

#include <utility>

namespace Orvane::ECProxy::Client::Internal {

PresetExtensions::PresetExtensions(std::function<int()> page)
    : m_page(std::move(page))
{
    if (const QCoreApplication* app = QCoreApplication::instance())
        moveToThread(app->thread());
}

void PresetExtensions::add(IPresetCommandEx* extension)
{
    if (const QCoreApplication* app = QCoreApplication::instance())
        extension->moveToThread(app->thread());
    bool isNew = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        isNew = !m_listPresetCmd.contains(extension);
        if (isNew) {
            m_listPresetCmd.append(extension);
            m_queuedCalls.append({{extension}, m_page(), {}});
        }
    }
    if (isNew)
        startQueuedCalls();
    else
        ecWarning(
            lcKeys, "Preset extension %s refused: it is registered already.",
            qUtf8Printable(extension->name()));
}

void PresetExtensions::tellPage()
{
    enqueue({});
}

void PresetExtensions::call(KeyCall operation, quint32 ecKey)
{
    enqueue([operation, ecKey](IPresetCommandEx& extension) { (extension.*operation)(ecKey); });
}

bool PresetExtensions::selectPresetPressed(quint32 ecKey)
{
    const bool isOwn = isOwnThread();
    if (isOwn)
        m_bBound = false;
    enqueue([this, ecKey](IPresetCommandEx& extension) {
        const QPointer<IPresetCommandEx> called(&extension);
        extension.selectPresetPressed(ecKey);
        if (called) // or it has deleted itself
            m_bBound = called->isBindProgram(ecKey);
    });
    return isOwn && m_bBound;
}

void PresetExtensions::clearPresetsPressed()
{
    enqueue([](IPresetCommandEx& extension) { extension.clearPresetsPressed(); });
}

void PresetExtensions::ecTBarChanged(const ECTBarValue& value)
{
    enqueue([value](IPresetCommandEx& extension) { extension.ecTBarChanged(value); });
}

bool PresetExtensions::isOwnThread() const
{
    return QThread::currentThread() == thread();
}

void PresetExtensions::enqueue(Operation operation)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_listPresetCmd.isEmpty())
            return;
        m_queuedCalls.append({m_listPresetCmd, m_page(), std::move(operation)});
    }
    startQueuedCalls();
}

void PresetExtensions::startQueuedCalls()
{
    if (isOwnThread())
        makeQueuedCalls();
    else
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void PresetExtensions::customEvent(QEvent*)
{
    makeQueuedCalls();
}

void PresetExtensions::makeQueuedCalls()
{
    for (;;) {
        Call next;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_listPresetCmd.removeAll(nullptr);
            if (m_queuedCalls.isEmpty())
                return;
            // One by one: an extension may bring about further calls, which come behind those that wait.
            next = m_queuedCalls.takeFirst();
        }
        make(next);
    }
}

void PresetExtensions::make(const Call& call)
{
    // Checked before each use: an extension may delete itself or another one.
    for (const auto& extension : call.receivers) {
        if (extension && (!call.operation || extension->d->m_toldPage != call.page)) {
            extension->d->m_toldPage = call.page;
            extension->updatePageIndex();
        }
        if (extension && call.operation)
            call.operation(*extension);
    }
}

} // namespace Orvane::ECProxy::Client::Internal
