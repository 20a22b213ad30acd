#include "hostwindow.h"

#include "boards.h"
#include "ecmanager.h"
#include "hostlog.h"
#include "lockcontrol.h"
#include "memorydevicelist.h"
#include "memorymodel.h"
#include "modelwatcher.h"
#include "screenwall.h"
#include "typingfield.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QStatusBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace Orvane::ConsoleHost {

using ECProxy::Client::ECManager;

namespace {

constexpr int MaxLogLines = 2000;
constexpr QSize FirstSize(1280, 820);
constexpr int PresetsWidth = 330;
constexpr int LogHeight = 140;

QPalette darkPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0x1d, 0x1f, 0x23));
    palette.setColor(QPalette::Base, QColor(0x15, 0x16, 0x19));
    palette.setColor(QPalette::AlternateBase, QColor(0x1d, 0x1f, 0x23));
    palette.setColor(QPalette::Button, QColor(0x34, 0x38, 0x40));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, QColor(0xe6, 0xe6, 0xe6));
    palette.setColor(QPalette::PlaceholderText, QColor(0x80, 0x80, 0x80));
    palette.setColor(QPalette::Highlight, QColor(0x35, 0x7a, 0xb0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

void showLock(QToolButton& button, bool locked)
{
    button.setChecked(locked);
    button.setText(button.objectName() + (locked ? QStringLiteral(": locked") : QStringLiteral(": free")));
}

} // namespace

HostWindow::HostWindow(MemoryModel::MemoryModel& model, TypingField* field, HostLog& log)
    : m_log(log)
{
    setObjectName(QStringLiteral("hostWindow"));
    setWindowTitle(QStringLiteral("Orvane console host"));
    setPalette(darkPalette());
    resize(FirstSize);

    m_pLogView = new QPlainTextEdit;
    m_pLogView->setReadOnly(true);
    m_pLogView->setFocusPolicy(Qt::NoFocus);
    m_pLogView->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_pLogView->setMaximumBlockCount(MaxLogLines);
    m_pLogView->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    connect(&m_log, &HostLog::signalLinesPending, this, &HostWindow::showLogLines, Qt::QueuedConnection);

    auto* content = new QSplitter(Qt::Vertical);
    content->addWidget(createStage(model));
    content->addWidget(m_pLogView);
    content->setStretchFactor(0, 1);
    content->setSizes({FirstSize.height(), LogHeight});
    auto* central = new QWidget;
    auto* rows = new QVBoxLayout(central);
    rows->addWidget(content, 1);
    rows->addWidget(createInputRow(field));
    setCentralWidget(central);

    statusBar();
    field->setFocus();
    showLogLines();
}

QWidget* HostWindow::createStage(MemoryModel::MemoryModel& model)
{
    m_pTitle = new QLabel;
    m_pScreens = new ScreenWall;
    m_pInputs = new InputBoard;
    m_pPresets = new PresetBoard;

    auto* left = new QWidget;
    auto* rows = new QVBoxLayout(left);
    rows->setContentsMargins({});
    rows->addWidget(m_pTitle);
    rows->addWidget(m_pScreens, 3);
    rows->addWidget(m_pInputs, 1);
    auto* stage = new QSplitter(Qt::Horizontal);
    stage->addWidget(left);
    stage->addWidget(m_pPresets);
    stage->setStretchFactor(0, 1);
    stage->setSizes({FirstSize.width(), PresetsWidth});

    const auto setInput =
        [&model](MemoryModel::ControlResult (MemoryModel::Control::*change)(const QString&, quint32, bool)) {
            return [&model, change](quint32 input, bool on) {
                (model.control().*change)(pictureActiveDevice(model).identity, input, on);
            };
        };
    connect(m_pInputs, &InputBoard::signalSetSignal, this, setInput(&MemoryModel::Control::setSignal));
    connect(m_pInputs, &InputBoard::signalSetOverload, this, setInput(&MemoryModel::Control::setOverload));

    auto* watcher = new ModelWatcher(model, this);
    connect(watcher, &ModelWatcher::signalChanged, this, &HostWindow::showDevice);
    showDevice(watcher->picture());
    return stage;
}

void HostWindow::showDevice(const DevicePicture& device)
{
    if (device.identity.isEmpty()) {
        m_pTitle->setText(QStringLiteral("No device is active."));
    } else {
        m_pTitle->setText(QStringLiteral("%1   %2%3")
                              .arg(
                                  device.identity,
                                  device.isOnline ? QStringLiteral("online") : QStringLiteral("offline"),
                                  device.isSwapEnabled ? QStringLiteral("   swap") : QString()));
    }
    m_pScreens->showDevice(device);
    m_pInputs->showDevice(device);
    m_pPresets->showDevice(device);
}

QWidget* HostWindow::createInputRow(TypingField* field)
{
    const ECManager* const manager = ECManager::instance();
    auto* keypad = createLockButton(QStringLiteral("Keypad"), &setKeypadLocked);
    connect(manager, &ECManager::signalKeyboardLocked, keypad, [keypad](bool locked) {
        showLock(*keypad, locked);
    });
    auto* tbar = createLockButton(QStringLiteral("T-Bar"), &setTBarLocked);
    connect(manager, &ECManager::signalTbarLocked, tbar, [tbar](bool locked) { showLock(*tbar, locked); });

    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->addWidget(new QLabel(QStringLiteral("Keypad input")));
    layout->addWidget(field, 1);
    layout->addWidget(keypad);
    layout->addWidget(tbar);
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

void HostWindow::addWindowButton(const QString& text, QWidget& window)
{
    window.setPalette(palette());
    auto* button = new QToolButton;
    button->setFocusPolicy(Qt::NoFocus);
    button->setText(text);
    connect(button, &QToolButton::clicked, &window, [&window] {
        window.show();
        window.raise();
    });
    statusBar()->addPermanentWidget(button);
}

void HostWindow::showLogLines()
{
    const QStringList lines = m_log.takeLines();
    if (!lines.isEmpty())
        m_pLogView->appendPlainText(lines.join(QLatin1Char('\n')));
}

} // namespace Orvane::ConsoleHost
