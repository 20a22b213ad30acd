#include "hostwindow.h"

#include "ecmanager.h"
#include "hostlog.h"
#include "lockcontrol.h"
#include "typingfield.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QToolButton>
#include <QVBoxLayout>

namespace Orvane::ConsoleHost {

using ECProxy::Client::ECManager;

namespace {

constexpr int MaxLogLines = 2000;
constexpr QSize PreferredSize(960, 540);

void showLock(QToolButton& button, bool locked)
{
    button.setChecked(locked);
    button.setText(button.objectName() + (locked ? QStringLiteral(": locked") : QStringLiteral(": free")));
}

} // namespace

HostWindow::HostWindow(TypingField* field, HostLog& log)
    : m_log(log)
{
    setObjectName(QStringLiteral("hostWindow"));
    setWindowTitle(QStringLiteral("Orvane console host"));

    m_pLogView = new QPlainTextEdit;
    m_pLogView->setReadOnly(true);
    m_pLogView->setFocusPolicy(Qt::NoFocus);
    m_pLogView->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_pLogView->setMaximumBlockCount(MaxLogLines);
    m_pLogView->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    connect(&m_log, &HostLog::signalLinesPending, this, &HostWindow::showLogLines, Qt::QueuedConnection);

    auto* content = new QWidget;
    auto* rows = new QVBoxLayout(content);
    rows->addWidget(createInputRow(field));
    rows->addWidget(m_pLogView, 1);
    setCentralWidget(content);
    field->setFocus();
    showLogLines();
}

QSize HostWindow::sizeHint() const
{
    return PreferredSize;
}

QWidget* HostWindow::createInputRow(TypingField* field)
{
    const ECManager* const manager = ECManager::instance();
    m_pKeypadLock = createLockButton(QStringLiteral("Keypad"), &setKeypadLocked);
    connect(manager, &ECManager::signalKeyboardLocked, m_pKeypadLock, [this](bool locked) {
        showLock(*m_pKeypadLock, locked);
    });
    m_pTBarLock = createLockButton(QStringLiteral("T-Bar"), &setTBarLocked);
    connect(manager, &ECManager::signalTbarLocked, m_pTBarLock, [this](bool locked) {
        showLock(*m_pTBarLock, locked);
    });

    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->addWidget(new QLabel(QStringLiteral("Keypad input")));
    layout->addWidget(field, 1);
    layout->addWidget(m_pKeypadLock);
    layout->addWidget(m_pTBarLock);
    return row;
}

QToolButton* HostWindow::createLockButton(const QString& name, void (*setLocked)(bool))
{
    auto* button = new QToolButton;
    button->setObjectName(name);
    button->setCheckable(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setToolTip(QStringLiteral("Locks or frees it on the console"));
    showLock(*button, false);
    connect(button, &QToolButton::clicked, button, setLocked);
    return button;
}

void HostWindow::showLogLines()
{
    const QStringList lines = m_log.takeLines();
    if (!lines.isEmpty())
        m_pLogView->appendPlainText(lines.join(QLatin1Char('\n')));
}

} // namespace Orvane::ConsoleHost
