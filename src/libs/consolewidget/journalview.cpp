#include "journalview.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>

namespace Orvane::ConsolePanel {

JournalView::JournalView(JournalModel& journal, QWidget* parent)
    : QWidget(parent)
    , m_journal(journal)
    , m_pFilter(new QLineEdit)
    , m_pTable(new QTableView)
{
    setObjectName(QStringLiteral("journal"));
    m_filtered.setSourceModel(&m_journal);
    m_filtered.setFilterKeyColumn(-1); // any column
    m_filtered.setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_pFilter->setObjectName(QStringLiteral("journalFilter"));
    m_pFilter->setPlaceholderText(
        QStringLiteral("Only lines with this text: key=12, press, Flashing, 65 00"));
    m_pFilter->setClearButtonEnabled(true);
    connect(m_pFilter, &QLineEdit::textChanged, &m_filtered, &QSortFilterProxyModel::setFilterFixedString);
    auto* const clear = new QPushButton(QStringLiteral("Clear"));
    clear->setFocusPolicy(Qt::NoFocus);
    connect(clear, &QPushButton::clicked, &m_journal, &JournalModel::clear);

    m_pTable->setModel(&m_filtered);
    m_pTable->setFocusPolicy(Qt::ClickFocus);
    m_pTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_pTable->setWordWrap(false);
    m_pTable->setShowGrid(false);
    m_pTable->verticalHeader()->hide();
    m_pTable->horizontalHeader()->setStretchLastSection(true);

    auto* const tools = new QHBoxLayout;
    tools->addWidget(m_pFilter, 1);
    tools->addWidget(clear);
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(4, 2, 4, 4);
    rows->addLayout(tools);
    rows->addWidget(m_pTable, 1);
    fitToFont();
}

void JournalView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange && m_pTable)
        fitToFont();
}

void JournalView::fitToFont()
{
    const int rowHeight = m_pTable->fontMetrics().height() + 2;
    m_pTable->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed); // asks no row for its height
    m_pTable->verticalHeader()->setDefaultSectionSize(rowHeight);
    const int character = m_pTable->fontMetrics().averageCharWidth();
    m_pTable->setColumnWidth(JournalModel::TimeColumn, character * 11);
    m_pTable->setColumnWidth(JournalModel::DirectionColumn, character * 8);
    m_pTable->setColumnWidth(JournalModel::TextColumn, character * 96);
}

void JournalView::refresh()
{
    const QScrollBar* const bar = m_pTable->verticalScrollBar();
    const bool follows = bar->value() >= bar->maximum();
    m_journal.flush();
    if (follows)
        m_pTable->scrollToBottom();
}

} // namespace Orvane::ConsolePanel
