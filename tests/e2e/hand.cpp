#include "hand.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

bool Hand::isReal()
{
    static const bool isReal = QGuiApplication::platformName() == QLatin1String("xcb")
        && !QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty();
    return isReal;
}

/// Does nothing and returns false where there is no real pointer.
bool Hand::moveReal(QWidget& widget, QPoint place, QEvent::Type expected, const char* button)
{
    if (!isReal())
        return false;
    const QPoint point = widget.mapToGlobal(place);
    QStringList words{QStringLiteral("mousemove"), QString::number(point.x()), QString::number(point.y())};
    if (button)
        words << QLatin1String(button) << QStringLiteral("1");
    m_awaited = expected;
    qApp->installEventFilter(this);
    const bool isDone = QProcess::execute(QStringLiteral("xdotool"), words) == 0
        && QTest::qWaitFor([this] { return m_awaited == QEvent::None; });
    qApp->removeEventFilter(this);
    if (!isDone)
        QTest::qFail("the window got no event of the pointer", __FILE__, __LINE__);
    return true;
}

bool Hand::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == m_awaited)
        m_awaited = QEvent::None;
    return false;
}

void Hand::press(QWidget& widget, std::optional<QPoint> place)
{
    const QPoint at = place.value_or(widget.rect().center());
    if (!moveReal(widget, at, QEvent::MouseButtonPress, "mousedown"))
        QTest::mousePress(&widget, Qt::LeftButton, {}, at);
}

void Hand::move(QWidget& widget, QPoint place)
{
    if (moveReal(widget, place, QEvent::MouseMove))
        return;
    // Qt Test's own move tells no button.
    QMouseEvent drag(QEvent::MouseMove, place, Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&widget, &drag);
}

void Hand::release(QWidget& widget, std::optional<QPoint> place)
{
    const QPoint at = place.value_or(widget.rect().center());
    if (!moveReal(widget, at, QEvent::MouseButtonRelease, "mouseup"))
        QTest::mouseRelease(&widget, Qt::LeftButton, {}, at);
}

void Hand::click(QWidget& widget)
{
    press(widget);
    release(widget);
}
