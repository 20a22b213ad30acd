#include "surfacewindow.h"

#include "commandtable.h"
#include "ec/eckeyboardconfig.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QTableWidget>
#include <QVBoxLayout>

namespace Orvane::ConsoleHost {

namespace {

constexpr QSize FirstSize(1440, 640);
constexpr int RefreshMs = 250;
const QColor DifferenceColor(0xe0, 0x8a, 0x2a);

enum Column {
    KeyColumn,
    FunctionColumn,
    WantedLightColumn,
    SentLightColumn,
    WantedLabelColumn,
    SentLabelColumn,
    ColumnCount
};

} // namespace

SurfaceWindow::SurfaceWindow(const EC::s_ECKeyboardConfig& keyboard)
    : m_layout(ConsolePanel::ConsoleLayout::fromConfig(keyboard))
    , m_pTable(new QTableWidget)
    , m_pDifferencesOnly(new QCheckBox(QStringLiteral("Differences only")))
{
    setObjectName(QStringLiteral("surfaceWindow"));
    setWindowTitle(QStringLiteral("What the keys are to show"));
    setWindowFlag(Qt::WindowDoesNotAcceptFocus);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_GroupLeader); // no dialog of the application stops it
    resize(FirstSize);
    m_pTable->setColumnCount(ColumnCount);
    m_pTable->setHorizontalHeaderLabels(
        {QStringLiteral("Key"), QStringLiteral("Function"), QStringLiteral("Light wanted"),
         QStringLiteral("Light sent"), QStringLiteral("Label wanted"), QStringLiteral("Label sent")});
    m_pTable->verticalHeader()->hide();
    m_pTable->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    for (const Column label : {WantedLabelColumn, SentLabelColumn})
        m_pTable->horizontalHeader()->setSectionResizeMode(label, QHeaderView::Stretch);
    m_pTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_pTable->setSelectionMode(QAbstractItemView::NoSelection);
    m_pTable->setFocusPolicy(Qt::NoFocus);
    m_pDifferencesOnly->setFocusPolicy(Qt::NoFocus);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(m_pTable);
    layout->addWidget(m_pDifferencesOnly);
    connect(&m_timer, &QTimer::timeout, this, &SurfaceWindow::update);
    connect(m_pDifferencesOnly, &QCheckBox::toggled, this, &SurfaceWindow::update);
}

std::vector<SurfaceRow> SurfaceWindow::rows(const QJsonObject& shown) const
{
    return compareSurface(m_layout, m_shadow.surface(), shown);
}

void SurfaceWindow::showEvent(QShowEvent* event)
{
    update();
    m_timer.start(RefreshMs);
    QWidget::showEvent(event);
}

void SurfaceWindow::hideEvent(QHideEvent* event)
{
    m_timer.stop();
    QWidget::hideEvent(event);
}

void SurfaceWindow::update()
{
    const std::vector<SurfaceRow> rows = this->rows();
    m_pTable->setRowCount(int(rows.size()));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        showRow(int(i), rows[i]);
        m_pTable->setRowHidden(int(i), m_pDifferencesOnly->isChecked() && !rows[i].differs());
    }
}

void SurfaceWindow::showRow(int place, const SurfaceRow& row)
{
    const auto show = [&](Column column, const QString& text, bool isWrong = false) {
        QTableWidgetItem* item = m_pTable->item(place, column);
        if (!item) {
            item = new QTableWidgetItem;
            m_pTable->setItem(place, column, item);
        }
        item->setText(text);
        item->setForeground(isWrong ? QBrush(DifferenceColor) : palette().text());
    };
    show(KeyColumn, QString::number(row.key));
    show(FunctionColumn, QStringLiteral("%1: %2").arg(row.group, row.function));
    show(WantedLightColumn, row.light.wanted, row.light.differs);
    show(SentLightColumn, row.light.sent, row.light.differs);
    show(WantedLabelColumn, row.label.wanted, row.label.differs);
    show(SentLabelColumn, row.label.sent, row.label.differs);
}

void addSurfaceCommands(CommandTable& table, const std::unique_ptr<SurfaceWindow>& window)
{
    const QString absence = QStringLiteral("the host was started without --shadow");
    table.add(
        {QStringLiteral("surface"),
         QStringLiteral("tells what each key is to show and what the console was told last"),
         {Parameter::flag("differences").orElse(false), Parameter::text("shown").orElse(QString())},
         [&window, absence](const Arguments& arguments) {
             if (!window)
                 return Answer::refused(absence);
             QString fault;
             const QString file = arguments.text("shown");
             const QJsonObject shown = file.isEmpty() ? QJsonObject() : readShownSurface(file, fault);
             if (!fault.isEmpty())
                 return Answer::refused(fault);
             return Answer::done(
                 {{QStringLiteral("surface"), toJson(window->rows(shown), arguments.flag("differences"))}});
         }});
    table.add(
        {QStringLiteral("showSurface"),
         QStringLiteral("shows or hides the window that does so"),
         {Parameter::flag("visible")},
         [&window, absence](const Arguments& arguments) {
             if (!window)
                 return Answer::refused(absence);
             window->setVisible(arguments.flag("visible"));
             return Answer::done();
         }});
}

} // namespace Orvane::ConsoleHost
