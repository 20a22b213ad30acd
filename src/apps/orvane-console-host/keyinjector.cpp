#include "keyinjector.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPointer>

namespace Orvane::ConsoleHost {

KeyInjector::KeyInjector(QWidget& fallback, QObject* parent)
    : QObject(parent)
    , m_fallback(fallback)
{
}

void KeyInjector::slotStandardKeyPressed(unsigned int key, const QString& text)
{
    // What the press does may close a dialog, and its widgets with it.
    const QPointer<QWidget> target = receiver();
    QKeyEvent press(QEvent::KeyPress, int(key), Qt::NoModifier, text);
    QApplication::sendEvent(target, &press);
    if (!target)
        return;
    QKeyEvent release(QEvent::KeyRelease, int(key), Qt::NoModifier, text);
    QApplication::sendEvent(target, &release);
}

QWidget* KeyInjector::receiver() const
{
    const auto focusOf = [](QWidget* window) {
        return window->focusWidget() ? window->focusWidget() : window;
    };
    if (QWidget* popup = QApplication::activePopupWidget())
        return focusOf(popup);
    QWidget* const focus = QApplication::focusWidget();
    QWidget* const modal = QApplication::activeModalWidget();
    if (modal && (!focus || focus->window() != modal))
        return focusOf(modal);
    return focus ? focus : &m_fallback;
}

} // namespace Orvane::ConsoleHost
