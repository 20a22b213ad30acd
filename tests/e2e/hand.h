#pragma once

#include <QEvent>
#include <QPoint>
#include <QWidget>

#include <optional>

/// The operator's hand on a window. On an X display with xdotool it moves the display's own pointer, so that
/// an event takes every way that a visitor's takes; elsewhere Qt Test makes the events. Each returns when the
/// window has had its event.
class Hand : private QObject {
public:
    /// Presses the left button; at the middle of the widget when no place in it is given.
    void press(QWidget& widget, std::optional<QPoint> place = std::nullopt);
    void move(QWidget& widget, QPoint place);
    void release(QWidget& widget, std::optional<QPoint> place = std::nullopt);
    void click(QWidget& widget);

private:
    bool moveReal(QWidget& widget, QPoint place, QEvent::Type expected, const char* button = nullptr);
    bool eventFilter(QObject* watched, QEvent* event) override;

    static bool isReal();

    QEvent::Type m_awaited = QEvent::None;
};
