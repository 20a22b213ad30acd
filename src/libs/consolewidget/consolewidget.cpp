#include "consolewidget.h"

#include "consolepicture.h"
#include "downdescription.h"
#include "ec/eckeyfunctions.h"
#include "keycap.h"
#include "lightbar.h"
#include "tbarlever.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QToolTip>

#include <algorithm>

namespace Orvane::ConsolePanel {

using namespace ECProxy::Client;

namespace {

constexpr std::chrono::milliseconds FlashTime(400);
constexpr int KeysARow = 12;
constexpr int PadKeysARow = 4;

bool isPad(const QString& group)
{
    return group == QLatin1String("NumberCommand") || group == QLatin1String("FunctionCommand");
}

/// Where a key of the numeric keypad lies, as on every keypad; anything else in the order of the file.
QPoint placeOf(const QString& group, const ConsoleLayout::Key& key, int index)
{
    if (group != QLatin1String("NumberCommand"))
        return isPad(group) ? QPoint(index % PadKeysARow, index / PadKeysARow)
                            : QPoint(index % KeysARow, index / KeysARow);
    if (key.code == EC::SelectKeyCode && key.place <= 9)
        return key.place == 0 ? QPoint(0, 3) : QPoint((key.place - 1) % 3, 2 - (key.place - 1) / 3);
    constexpr int enterCode = 2;
    return {3, key.code == enterCode ? 3 : key.code - 3};
}

QString captionOf(const QString& group, const ConsoleLayout::Key& key)
{
    if (group == QLatin1String("NumberCommand") && key.code == EC::SelectKeyCode)
        return QString::number(key.place);
    if (key.code == EC::SelectKeyCode && !isPad(group))
        return QString::number(key.place + 1);
    const QString function = EC::keyFunctionName(group, key.code);
    return function.isEmpty() ? QString::number(key.number) : function;
}

QString titleOf(const QString& group)
{
    const QString suffix = QStringLiteral("Command");
    return group.endsWith(suffix) ? group.chopped(suffix.size()) : group;
}

QString lamp(const QString& name, bool isOn, const QString& detail = {})
{
    return QStringLiteral("<span style='color:%1'>\u25cf</span> %2%3")
        .arg(isOn ? QStringLiteral("#ffb43c") : QStringLiteral("#4a4e55"), name)
        .arg(detail.isEmpty() ? QString() : QLatin1Char(' ') + detail);
}

} // namespace

QPalette consolePalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0x22, 0x24, 0x28));
    palette.setColor(QPalette::Base, QColor(0x15, 0x16, 0x19));
    palette.setColor(QPalette::Button, QColor(0x3a, 0x3e, 0x46));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, QColor(0xdc, 0xdf, 0xe4));
    palette.setColor(QPalette::PlaceholderText, QColor(0x80, 0x85, 0x8d));
    palette.setColor(QPalette::AlternateBase, QColor(0x1b, 0x1d, 0x21));
    palette.setColor(QPalette::Highlight, QColor(0x35, 0x7a, 0xb0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

ConsoleWidget::ConsoleWidget(const ConsoleLayout& layout, const ConsoleRecorder& console, QWidget* parent)
    : QWidget(parent)
    , m_layout(layout)
    , m_console(console)
    , m_shortcuts(layout)
{
    setObjectName(QStringLiteral("console"));
    setPalette(consolePalette());
    setAutoFillBackground(true);
    setFocusPolicy(Qt::StrongFocus);
    m_pGroups = new QVBoxLayout;
    auto* const pads = new QVBoxLayout;
    for (const ConsoleLayout::Group& group : m_layout.groups) {
        QGroupBox* const box = createGroup(group);
        const int perRow = isPad(group.name) ? PadKeysARow : KeysARow;
        (isPad(group.name) ? pads : m_pGroups)
            ->addWidget(box, (int(group.keys.size()) + perRow - 1) / perRow);
    }
    pads->addWidget(createTBar(), 3);
    m_pFacts = new QLabel;
    m_pFacts->setObjectName(QStringLiteral("facts"));
    m_pFacts->setWordWrap(true);
    auto* const columns = new QHBoxLayout;
    columns->addLayout(m_pGroups, KeysARow);
    columns->addLayout(pads, PadKeysARow);
    auto* const rows = new QVBoxLayout(this);
    rows->addLayout(columns, 1);
    rows->addWidget(m_pFacts);
    for (QBoxLayout* box : {m_pGroups, static_cast<QBoxLayout*>(pads), static_cast<QBoxLayout*>(rows)})
        box->setSpacing(4);
    rows->setContentsMargins(6, 4, 6, 4);
    connect(&m_frames, &FrameCoalescer::signalFrame, this, &ConsoleWidget::refresh);
    m_flashing.setInterval(FlashTime);
    connect(&m_flashing, &QTimer::timeout, this, &ConsoleWidget::flash);
    refresh();
}

ConsoleWidget::~ConsoleWidget()
{
    for (KeyCap* cap : qAsConst(m_keys))
        cap->letGo(); // while there is somebody to report it
}

QWidget* ConsoleWidget::createTBar()
{
    auto* const box = new QGroupBox(QStringLiteral("T-Bar"));
    m_pLever = new TBarLever;
    connect(m_pLever, &TBarLever::signalMoved, this, &ConsoleWidget::signalTBarMoved);
    m_pLightBar = new LightBar;
    m_pLamps = new QLabel;
    m_pLamps->setObjectName(QStringLiteral("lamps"));
    m_pLamps->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto* const row = new QHBoxLayout(box);
    row->setContentsMargins(8, 4, 8, 4);
    row->addWidget(m_pLever);
    row->addWidget(m_pLightBar);
    row->addWidget(m_pLamps, 1);
    return box;
}

QGroupBox* ConsoleWidget::createGroup(const ConsoleLayout::Group& group)
{
    auto* const box = new QGroupBox(titleOf(group.name));
    auto* const grid = new QGridLayout(box);
    grid->setContentsMargins(4, 2, 4, 4);
    grid->setSpacing(3);
    int index = 0;
    for (const ConsoleLayout::Key& key : group.keys) {
        const QPoint place = placeOf(group.name, key, index++);
        grid->addWidget(createKey(group.name, key), place.y(), place.x());
        grid->setRowStretch(place.y(), 1);
    }
    // As wide as the others, however few keys there are.
    for (int column = 0; column < (isPad(group.name) ? PadKeysARow : KeysARow); ++column)
        grid->setColumnStretch(column, 1);
    return box;
}

KeyCap* ConsoleWidget::createKey(const QString& group, const ConsoleLayout::Key& key)
{
    auto* const cap = new KeyCap(key, captionOf(group, key));
    connect(cap, &KeyCap::signalMoved, this, [this, number = key.number](bool isDown) {
        Q_EMIT signalKeyMoved(number, isDown);
    });
    m_keys.insert(key.number, cap);
    m_functions.insert(cap, titleOf(group) + QStringLiteral(": ") + EC::keyFunctionName(group, key.code));
    return cap;
}

void ConsoleWidget::showLever(quint32 position)
{
    m_pLever->showPosition(position);
}

void ConsoleWidget::addKeysOutsideLayout()
{
    if (m_console.state().keys.size() <= std::size_t(m_keys.size()) && m_nOthers == 0
        && std::all_of(m_console.state().keys.begin(), m_console.state().keys.end(), [this](const auto& key) {
               return m_keys.contains(key.first);
           }))
        return;
    const ConsoleLayout::Group others = m_layout.keysOutside(m_console.state());
    if (others.keys.size() == m_nOthers)
        return;
    m_nOthers = others.keys.size();
    if (m_pOthers) {
        for (KeyCap* cap : m_pOthers->findChildren<KeyCap*>()) {
            m_keys.remove(cap->key().number, cap);
            m_functions.remove(cap);
        }
        delete m_pOthers;
    }
    m_pOthers = createGroup(others);
    m_pGroups->addWidget(m_pOthers, (int(others.keys.size()) + KeysARow - 1) / KeysARow);
}

void ConsoleWidget::refresh()
{
    addKeysOutsideLayout();
    const ConsoleState& state = m_console.state();
    for (KeyCap* cap : qAsConst(m_keys))
        showKey(*cap);
    const bool fromBottom = !state.tbarLevel || state.tbarLevel->IsBottomToTop == BottomToTop;
    m_pLightBar->setLevel(
        state.tbarLevel ? int(std::min(quint32(state.tbarLevel->Value), 12U)) : 0, fromBottom);
    m_pLamps->setText(lampText());
    const QString facts = ConsolePicture(m_layout, m_console, {}).factLines().join(QStringLiteral("   "));
    m_pFacts->setText(facts);
    m_pFacts->setVisible(!facts.isEmpty());
    const bool anyFlashes = std::any_of(state.keys.begin(), state.keys.end(), [](const auto& key) {
        return key.second.isLit && key.second.buttonState == Flashing;
    });
    if (anyFlashes != m_flashing.isActive())
        anyFlashes ? m_flashing.start() : m_flashing.stop();
}

void ConsoleWidget::flash()
{
    m_bFlashOn = !m_bFlashOn;
    for (KeyCap* cap : qAsConst(m_keys))
        showKey(*cap);
}

void ConsoleWidget::showKey(KeyCap& cap)
{
    const ConsoleState& state = m_console.state();
    const auto key = state.keys.find(cap.key().number);
    cap.setLight(key == state.keys.end() ? KeyState() : key->second, m_bFlashOn);
    cap.setLuminance(state.luminance.value_or(100));
    if (!cap.key().label)
        return;
    const auto label = state.labels.find(*cap.key().label);
    cap.setLabel(label == state.labels.end() ? QByteArray() : label->second.text);
}

QString ConsoleWidget::lampText() const
{
    const ConsoleState& state = m_console.state();
    QStringList lines{
        lamp(QStringLiteral("T-Bar locked"), state.isTBarLocked),
        lamp(QStringLiteral("Keypad locked"), state.isKeypadLocked)};
    for (const quint8 type : {Gooseneck, Front, Logo, Other}) {
        const auto light = state.lights.find(type);
        if (light != state.lights.end())
            lines.append(
                lamp(lightName(type), light->second.isOn, QString::number(light->second.brightness)));
        else if (type != Other)
            lines.append(lamp(lightName(type), false));
    }
    if (state.luminance)
        lines.append(QStringLiteral("display %1 %").arg(*state.luminance));
    return lines.join(QStringLiteral("<br>"));
}

QString ConsoleWidget::toolTipOf(const KeyCap& cap) const
{
    const ConsoleLayout::Key& key = cap.key();
    QStringList lines{
        m_functions.value(&cap),
        QStringLiteral("key %1, in the application %2").arg(key.number).arg(key.appKey)};
    if (key.label)
        lines.last() += QStringLiteral(", label %1").arg(*key.label);
    if (const QString shortcut = m_shortcuts.textFor(key.number); !shortcut.isEmpty())
        lines.append(QStringLiteral("keyboard: ") + shortcut);
    lines += m_history.ofKey(key.number);
    if (key.label)
        lines += m_history.ofLabel(*key.label);
    return lines.join(QLatin1Char('\n'));
}

bool ConsoleWidget::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto* const help = static_cast<QHelpEvent*>(event);
        if (const auto* const cap = qobject_cast<KeyCap*>(childAt(help->pos()))) {
            QToolTip::showText(help->globalPos(), toolTipOf(*cap), this);
            return true;
        }
    }
    return QWidget::event(event);
}

void ConsoleWidget::resizeEvent(QResizeEvent*)
{
    // Titles and lamps grow with the keys.
    constexpr int smallest = 11;
    QFont scaled = font();
    scaled.setPixelSize(std::max(smallest, std::min(width() / 110, height() / 58)));
    setFont(scaled);
    m_pLever->setHandleSize(scaled.pixelSize());
    m_pLightBar->setFixedWidth(scaled.pixelSize());
}

void ConsoleWidget::keyPressEvent(QKeyEvent* event)
{
    if (!moveKeyOf(*event, true))
        QWidget::keyPressEvent(event);
}

void ConsoleWidget::keyReleaseEvent(QKeyEvent* event)
{
    if (!moveKeyOf(*event, false))
        QWidget::keyReleaseEvent(event);
}

bool ConsoleWidget::moveKeyOf(const QKeyEvent& event, bool isDown)
{
    const std::optional<quint16> number = m_shortcuts.keyFor(event);
    KeyCap* const cap = number ? m_keys.value(*number) : nullptr;
    if (cap && !event.isAutoRepeat()) // the console has its own
        cap->setHand(KeyCap::Keyboard, isDown);
    return cap != nullptr;
}

void ConsoleWidget::focusOutEvent(QFocusEvent* event)
{
    // The release of a key of the keyboard goes elsewhere from now on.
    for (KeyCap* cap : qAsConst(m_keys))
        cap->setHand(KeyCap::Keyboard, false);
    QWidget::focusOutEvent(event);
}

} // namespace Orvane::ConsolePanel
