#pragma once

#include <QObject>
#include <QWidget>

namespace Orvane::ConsoleHost {

/// Turns the keypad's keys into key events for the widget that the user sees with the focus. On the GUI
/// thread.
class KeyInjector : public QObject {
    Q_OBJECT

public:
    /// `fallback` gets the keys where no widget has the focus: on a display without a window manager, or
    /// while another program's window is the active one.
    explicit KeyInjector(QWidget& fallback, QObject* parent = nullptr);

    /// Presses and releases a `Qt::Key` with its text.
    void slotStandardKeyPressed(unsigned int key, const QString& text);

private:
    QWidget* receiver() const;

    QWidget& m_fallback;
};

} // namespace Orvane::ConsoleHost
