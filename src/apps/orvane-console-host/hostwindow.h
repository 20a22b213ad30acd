#pragma once

#include <QMainWindow>

class QPlainTextEdit;
class QToolButton;

namespace Orvane::ConsoleHost {

class HostLog;
class TypingField;

/// The host's one window: the field that the keypad types into, the console's locks, and the log. None of
/// its controls takes the focus away from the field.
class HostWindow : public QMainWindow {
    Q_OBJECT

public:
    /// Takes over `field`, which the host has without a window too.
    HostWindow(TypingField* field, HostLog& log);

    QSize sizeHint() const override;

private:
    QWidget* createInputRow(TypingField* field);
    QToolButton* createLockButton(const QString& name, void (*setLocked)(bool));
    void showLogLines();

    HostLog& m_log;
    QPlainTextEdit* m_pLogView = nullptr;
    QToolButton* m_pKeypadLock = nullptr;
    QToolButton* m_pTBarLock = nullptr;
};

} // namespace Orvane::ConsoleHost
