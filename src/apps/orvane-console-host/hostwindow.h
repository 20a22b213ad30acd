#pragma once

#include <QMainWindow>

class QLabel;
class QPlainTextEdit;
class QToolButton;

namespace Orvane::MemoryModel {
class MemoryModel;
}

namespace Orvane::ConsoleHost {

class HostLog;
class InputBoard;
class PresetBoard;
class ScreenWall;
class TypingField;
struct DevicePicture;

/// The host's one window: the screens, inputs and presets, the field that the keypad types into, the
/// console's locks, and the log. None of its controls takes the focus away from the field.
class HostWindow : public QMainWindow {
    Q_OBJECT

public:
    /// Takes over `field`, which the host has without a window too.
    HostWindow(MemoryModel::MemoryModel& model, TypingField* field, HostLog& log);

    /// Adds a button that shows another window, which outlives the event loop.
    void addWindowButton(const QString& text, QWidget& window);

private:
    QWidget* createStage(MemoryModel::MemoryModel& model);
    QWidget* createInputRow(TypingField* field);
    QToolButton* createLockButton(const QString& name, void (*setLocked)(bool));
    void showDevice(const DevicePicture& device);
    void showLogLines();

    HostLog& m_log;
    QLabel* m_pTitle = nullptr;
    ScreenWall* m_pScreens = nullptr;
    InputBoard* m_pInputs = nullptr;
    PresetBoard* m_pPresets = nullptr;
    QPlainTextEdit* m_pLogView = nullptr;
};

} // namespace Orvane::ConsoleHost
