#include "bridge/guiparallelmanager.h"

#include "bizmodel/devicelist.h"
#include "bridge/parallelround_p.h"

#include <QMetaObject>
#include <QThread>

#include <utility>

namespace Orvane::Bridge {

using namespace ParallelControl;

GuiParallelManager::GuiParallelManager(std::chrono::milliseconds waitLimit)
    : m_waitLimit(waitLimit)
{
}

GuiParallelManager::~GuiParallelManager() = default;

bool GuiParallelManager::startParallelRequest(
    const std::weak_ptr<BizModel::Device>& device, const ParallelTaskFactory& factory, bool waitForResult,
    QString* error, Completion callback)
{
    QString reason;
    const BizModel::DeviceList* const list = BizModel::DeviceList::instance();
    const auto members =
        list ? list->groupDevices(device, true, false) : QList<std::weak_ptr<BizModel::Device>>();
    if (waitForResult && QThread::currentThread() == m_context.thread())
        reason = QStringLiteral("The thread that carries out requests cannot wait for one.");
    else if (!factory || members.isEmpty())
        reason =
            factory ? QStringLiteral("The device is gone.") : QStringLiteral("The request has no tasks.");
    bool ok = reason.isEmpty();
    if (ok) {
        const auto round = std::make_shared<ParallelRound>(members.size(), std::move(callback));
        *m_pTaskCount += members.size();
        for (const std::weak_ptr<BizModel::Device>& member : members) {
            const ParallelTask task = factory(member);
            begin(task);
            const OpenRequest end(
                taskName(task),
                [round, count = m_pTaskCount, done = doneOf(task)](bool ended, const QString& text) {
                    --*count;
                    if (done)
                        done(ended, text);
                    round->taskEnded(ended, text);
                });
            QMetaObject::invokeMethod(
                &m_context, [this, task, end] { perform(task, end); }, Qt::QueuedConnection);
        }
        ok = !waitForResult || round->wait(reason, m_waitLimit);
    }
    if (error)
        *error = reason;
    return ok;
}

int GuiParallelManager::currentTaskCount() const
{
    return *m_pTaskCount;
}

} // namespace Orvane::Bridge
