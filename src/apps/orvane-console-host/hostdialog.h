#pragma once

#include <QDialog>

namespace Orvane::ConsoleHost {

class EventWriter;

/// A modal dialog with a text and a number to fill in. While it is open most of the console's keys are
/// ignored, and the keypad types into it: digits into the field with the focus, Plus and Minus step the
/// number, Enter accepts.
class HostDialog : public QDialog {
    Q_OBJECT

public:
    HostDialog(EventWriter& events, QWidget* parent);
};

} // namespace Orvane::ConsoleHost
