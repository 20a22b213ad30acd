#include "explainerwindow.h"

#include "eckeytracer.h"
#include "enumwords_p.h"
#include "keyexplainer.h"
#include "keyexplanation.h"

#include <QDateTime>
#include <QHeaderView>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace Orvane::ConsoleHost {

using ECProxy::Client::ECKeyTrace;

namespace {

constexpr QSize FirstSize(1200, 560);
const QColor RefusedColor(0xe0, 0x8a, 0x2a);

enum Column { TimeColumn, KeyColumn, EventColumn, FunctionColumn, OutcomeColumn, ColumnCount };

QTreeWidgetItem* itemOf(const ECKeyTrace& trace)
{
    const QString time = QDateTime::fromMSecsSinceEpoch(trace.time).toString(QStringLiteral("hh:mm:ss.zzz"));
    const QString function = trace.owner.isEmpty()
        ? QStringLiteral("no group")
        : QStringLiteral("%1: %2").arg(trace.owner, trace.function);
    auto* const item = new QTreeWidgetItem(
        {time, QString::number(trace.ecKey), Internal::wordOf(trace.event), function, outcomeOf(trace)});
    item->setTextAlignment(KeyColumn, Qt::AlignRight | Qt::AlignVCenter);
    item->setToolTip(OutcomeColumn, outcomeOf(trace));
    if (!trace.reason.isEmpty())
        item->setForeground(OutcomeColumn, RefusedColor);
    const QStringList steps = stepsOf(trace);
    for (const QString& step : steps)
        new QTreeWidgetItem(item, QStringList(step));
    return item;
}

} // namespace

ExplainerWindow::ExplainerWindow(KeyExplainer& explainer)
    : m_explainer(explainer)
    , m_pTree(new QTreeWidget)
{
    setObjectName(QStringLiteral("explainerWindow"));
    setWindowTitle(QStringLiteral("What became of the keys"));
    setWindowFlag(Qt::WindowDoesNotAcceptFocus);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_GroupLeader); // no dialog of the application stops it
    resize(FirstSize);
    m_pTree->setFocusPolicy(Qt::NoFocus);
    m_pTree->setHeaderLabels(
        {QStringLiteral("Time"), QStringLiteral("Key"), QStringLiteral("Event"), QStringLiteral("Function"),
         QStringLiteral("What became of it")});
    m_pTree->setUniformRowHeights(true);
    m_pTree->setAlternatingRowColors(true);
    for (const auto& [column, width] :
         {std::pair(TimeColumn, 150), std::pair(KeyColumn, 70), std::pair(EventColumn, 90),
          std::pair(FunctionColumn, 330)})
        m_pTree->setColumnWidth(column, width);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_pTree);
    connect(&m_explainer, &KeyExplainer::signalExplained, this, &ExplainerWindow::addTraces);
}

void ExplainerWindow::showEvent(QShowEvent* event)
{
    m_explainer.setOn(true);
    QWidget::showEvent(event);
}

void ExplainerWindow::hideEvent(QHideEvent* event)
{
    m_explainer.setOn(false);
    QWidget::hideEvent(event);
}

void ExplainerWindow::addTraces(const QList<ECKeyTrace>& traces)
{
    QTreeWidgetItem* newestRefused = nullptr;
    for (const ECKeyTrace& trace : traces) {
        auto* const item = itemOf(trace);
        m_pTree->insertTopLevelItem(0, item);
        for (int i = 0; i < item->childCount(); ++i)
            item->child(i)->setFirstColumnSpanned(true); // which only the tree keeps
        if (!trace.reason.isEmpty())
            newestRefused = item;
    }
    while (m_pTree->topLevelItemCount() > ECProxy::Client::ECKeyTracer::MaxTraces)
        delete m_pTree->takeTopLevelItem(m_pTree->topLevelItemCount() - 1);
    if (newestRefused)
        newestRefused->setExpanded(true); // the one that somebody wants to know about
}

} // namespace Orvane::ConsoleHost
