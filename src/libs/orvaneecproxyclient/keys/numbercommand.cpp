#include "numbercommand.h"

#include "hoststate_p.h"
#include "keygroup_p.h"
#include "keytable_p.h"
#include "log_p.h"

#include <QApplication>
#include <QWidget>

#include <vector>

namespace Orvane::ECProxy::Client {

namespace Internal {

namespace {

constexpr uint LastDigit = 9;

void logObject(const char* format, const QObject* object, const QString& suffix = QString())
{
    const QString line = QString::fromLatin1(format).arg(
        object->objectName(), QLatin1String(object->metaObject()->className()));
    ecDebug(lcKeys, "%s", qUtf8Printable(line + suffix));
}

void logWidget(const char* format, const QWidget* widget)
{
    if (!widget)
        return;
    logObject(format, widget, QStringLiteral(", pos:(%1,%2)").arg(widget->x()).arg(widget->y()));
    const QWidget* child = widget->childAt(widget->pos());
    if (!child)
        return;
    ecDebug(lcKeys, "Object name:%s", qUtf8Printable(child->objectName()));
    if (const QObject* parent = child->parent())
        ecDebug(lcKeys, "Parent name:%s", qUtf8Printable(parent->objectName()));
}

/// Logs which widget gets the key. On the GUI thread only.
void logReceivers()
{
    if (qobject_cast<QApplication*>(QCoreApplication::instance())) {
        logWidget(
            "Has activeModalWidget, objectname is %1, classname is %2", QApplication::activeModalWidget());
        logWidget("Has activeWindow, objectname is %1, classname is %2", QApplication::activeWindow());
        logWidget("Has focusWidget, objectname is %1, classname is %2", QApplication::focusWidget());
    }
    if (const QObject* focus = QGuiApplication::focusObject())
        logObject("Has focusObject, objectname is %1, classname is %2", focus);
}

void printDebugLog()
{
    QCoreApplication* app = QCoreApplication::instance();
    if (!qobject_cast<QGuiApplication*>(app) || !lcKeys().isDebugEnabled())
        return;
    if (HostState::isGuiThread())
        logReceivers();
    else
        QMetaObject::invokeMethod(app, logReceivers, Qt::QueuedConnection);
}

} // namespace

class NumberCommandPrivate {
public:
    explicit NumberCommandPrivate(NumberCommand* command)
        : m_pCommand(command)
    {
    }

    bool selectNumberPressed(const quint32& ecKey)
    {
        const Qt::Key key = m_pCommand->getRealKeyValue(ecKey);
        return press(ecKey, key, QString(QChar(ushort(key))));
    }
    bool enterPressed(const quint32& ecKey) { return press(ecKey, Qt::Key_Enter, QStringLiteral("\r")); }
    bool backPressed(const quint32& ecKey) { return press(ecKey, Qt::Key_Backspace, QStringLiteral("\b")); }
    bool plusPressed(const quint32& ecKey) { return press(ecKey, Qt::Key_Up, QString()); }
    bool minusPressed(const quint32& ecKey) { return press(ecKey, Qt::Key_Down, QString()); }

    bool release(const quint32& ecKey)
    {
        m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Off);
        return true;
    }

    static const std::vector<KeyRow<NumberCommandPrivate>>& keys();

    NumberCommand* const m_pCommand;
    KeyGroup m_keys{std::nullopt, quint16(NumberCallbackType::eSelectNumberCB)};

private:
    bool press(quint32 ecKey, Qt::Key key, const QString& text)
    {
        m_pCommand->updateECButtonColor(ecKey, ECLEDColor::Green);
        m_pCommand->signalStandardKeyPressed(key, text);
        return true;
    }
};

const std::vector<KeyRow<NumberCommandPrivate>>& NumberCommandPrivate::keys()
{
    using Type = NumberCallbackType;
    using P = NumberCommandPrivate;
    // Typing into dialogs is what the keys are for. Without its release a key would stay green.
    constexpr unsigned typing = PressPassesDialog | ReleasePassesDialog;
    constexpr auto momentary = KeyLight::Momentary;
    static const std::vector<KeyRow<P>> rows{
        {Type::eSelectNumberCB, &P::selectNumberPressed, &P::release, typing, momentary},
        {Type::eEnterKeyCB, &P::enterPressed, &P::release, typing, momentary},
        {Type::eBackKeyCB, &P::backPressed, &P::release, typing, momentary},
        {Type::ePlusKeyCB, &P::plusPressed, &P::release, typing, momentary},
        {Type::eMinusKeyCB, &P::minusPressed, &P::release, typing, momentary},
    };
    return rows;
}

} // namespace Internal

using Internal::NumberCommandPrivate;

NumberCommand::NumberCommand(QObject* parent)
    : Command(parent)
    , d(std::make_unique<NumberCommandPrivate>(this))
{
    setKeyTable({this, d.get(), NumberCommandPrivate::keys()});
}

NumberCommand::~NumberCommand()
{
    stopPainting();
}

QString NumberCommand::name() const
{
    return QStringLiteral("NumberCommand");
}

QList<std::shared_ptr<ECCommandItem>> NumberCommand::commandItems() const
{
    return d->m_keys.items();
}

void NumberCommand::updateSelectModeButtonConfig()
{
    d->m_keys.make(ecCommandConfig(), 1);
    const auto items = d->m_keys.items();
    for (const auto& item : items)
        item->setECButtonIndex(item->ecButtonOrderIndex());
}

void NumberCommand::updateKeyboard()
{
    darkenKeys([](quint16) { return true; });
}

bool NumberCommand::isAllowedKeyPressed(const quint16& ecKey)
{
    return containsECButton(ecKey);
}

Qt::Key NumberCommand::getRealKeyValue(const quint32& ecKey) const
{
    const uint orderIndex = uint(findECButtonOrderIndex(ecKey));
    if (orderIndex > Internal::LastDigit) {
        ecWarning(lcKeys, "key order index was not found. ->%u", orderIndex);
        return Qt::Key_unknown;
    }
    return Qt::Key(Qt::Key_0 + int(orderIndex));
}

void NumberCommand::signalStandardKeyPressed(quint32 key, QString text)
{
    Internal::printDebugLog();
    Command::signalStandardKeyPressed(key, text);
}

void NumberCommand::slotECButtonPressed(const quint32& ecKey)
{
    dispatchPressed(ecKey);
}

void NumberCommand::slotECButtonRelease(const quint32& ecKey)
{
    dispatchReleased(ecKey);
}

} // namespace Orvane::ECProxy::Client
