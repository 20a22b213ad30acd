#include "presetextensions_p.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

namespace Orvane::ECProxy::Client::Internal {

PresetExtensions::PresetExtensions()
{
    if (const QCoreApplication* app = QCoreApplication::instance())
        moveToThread(app->thread());
}

void PresetExtensions::add(IPresetCommandEx* extension)
{
    if (const QCoreApplication* app = QCoreApplication::instance())
        extension->moveToThread(app->thread());
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_listPresetCmd.append(extension);
}

void PresetExtensions::forEach(const Call& call)
{
    const bool isOwnThread = QThread::currentThread() == thread();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_listPresetCmd.isEmpty())
            return;
        if (!isOwnThread)
            m_queuedCalls.append(call);
    }
    if (isOwnThread) {
        makeQueuedCalls();
        callAll(call);
    } else {
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }
}

void PresetExtensions::customEvent(QEvent*)
{
    makeQueuedCalls();
}

void PresetExtensions::makeQueuedCalls()
{
    QList<Call> calls;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        calls.swap(m_queuedCalls);
    }
    for (const Call& call : qAsConst(calls))
        callAll(call);
}

void PresetExtensions::callAll(const Call& call)
{
    QList<QPointer<IPresetCommandEx>> extensions;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_listPresetCmd.removeAll(nullptr);
        if (m_listPresetCmd.isEmpty())
            m_mapBindProgram.clear();
        extensions = m_listPresetCmd;
    }
    for (const auto& extension : qAsConst(extensions)) {
        if (extension) // or an earlier one has deleted it
            call(*extension);
    }
}

void PresetExtensions::tellPage(int page)
{
    forEach([page](IPresetCommandEx& extension) {
        const QPointer<IPresetCommandEx> told(&extension);
        extension.d->m_toldPage = page;
        extension.updatePageIndex();
        if (told) // or it has deleted itself
            told->d->m_toldPage.reset();
    });
}

bool PresetExtensions::selectPresetPressed(quint32 ecKey)
{
    forEach([this, ecKey](IPresetCommandEx& extension) {
        extension.selectPresetPressed(ecKey);
        const bool bound = extension.isBindProgram(ecKey);
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_mapBindProgram[ecKey] = bound;
    });
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_mapBindProgram.value(ecKey, false);
}

} // namespace Orvane::ECProxy::Client::Internal
