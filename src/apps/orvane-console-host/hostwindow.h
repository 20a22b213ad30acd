#pragma once

#include <QMainWindow>

class QPlainTextEdit;
class QToolButton;

namespace Orvane::MemoryModel {
class MemoryModel;
}

namespace Orvane::ConsoleHost {

class HostLog;
class TypingField;

/// The host's one window: the screens, the field that the keypad types into, the console's locks, and the
/// log. None of its controls takes the focus away from the field.
class HostWindow : public QMainWindow {
    Q_OBJECT

public:
    /// Takes over `field`, which the host has without a window too.
    HostWindow(MemoryModel::MemoryModel& model, TypingField* field, HostLog& log);

private:
    QWidget* createInputRow(TypingField* field);
    QToolButton* createLockButton(const QString& name, void (*setLocked)(bool));
    void showLogLines();

    HostLog& m_log;
    QPlainTextEdit* m_pLogView = nullptr;
};

} // namespace Orvane::ConsoleHost
