#include "surfacewindow.h"

#include "commandtable.h"
#include "ec/eckeyboardconfig.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace Orvane::ConsoleHost {

namespace {

constexpr QSize FirstSize(1440, 640);
constexpr int ComparingWidth = 1900;
constexpr int RefreshMs = 250;
const QColor DifferenceColor(0xe0, 0x8a, 0x2a);

enum Column {
    KeyColumn,
    FunctionColumn,
    WantedLightColumn,
    SentLightColumn,
    ShownLightColumn,
    WantedLabelColumn,
    SentLabelColumn,
    ShownLabelColumn,
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
         QStringLiteral("Light sent"), QStringLiteral("Light shown"), QStringLiteral("Label wanted"),
         QStringLiteral("Label sent"), QStringLiteral("Label shown")});
    compareWith({});
    m_pTable->verticalHeader()->hide();
    m_pTable->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    for (const Column label : {WantedLabelColumn, SentLabelColumn, ShownLabelColumn})
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

QString SurfaceWindow::compareWith(const QString& file)
{
    QString fault;
    const QJsonObject shown = file.isEmpty() ? QJsonObject() : readShownSurface(file, fault);
    if (!fault.isEmpty())
        return fault;
    if (m_shownFile.isEmpty() && !file.isEmpty())
        resize(std::max(width(), ComparingWidth), height());
    m_shownFile = file;
    m_shown = shown;
    for (const Column column : {ShownLightColumn, ShownLabelColumn})
        m_pTable->setColumnHidden(column, file.isEmpty());
    return QString();
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
    // The simulator may just be writing: what it wrote before stays then.
    if (!m_shownFile.isEmpty())
        compareWith(m_shownFile);
    const std::vector<SurfaceRow> rows = this->rows(m_shown);
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
    show(ShownLightColumn, row.light.shown.value_or(QString()), row.light.differs);
    show(WantedLabelColumn, row.label.wanted, row.label.differs);
    show(SentLabelColumn, row.label.sent, row.label.differs);
    show(ShownLabelColumn, row.label.shown.value_or(QString()), row.label.differs);
}

void addSurfaceCommands(CommandTable& table, const std::unique_ptr<SurfaceWindow>& window)
{
    const QString absence = QStringLiteral("the host was started without --shadow");
    table.add(
        "surface", "tells what each key is to show and what the console was told last",
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
        });
    table.add(
        "showSurface", "shows or hides the window that does so",
        {Parameter::flag("visible"), Parameter::text("shown").orElse(QString())},
        [&window, absence](const Arguments& arguments) {
            const QString fault = window ? window->compareWith(arguments.text("shown")) : absence;
            if (fault.isEmpty())
                window->setVisible(arguments.flag("visible"));
            return Answer::of(fault);
        });
}

} // namespace Orvane::ConsoleHost
