#pragma once

#include "consolerecorder.h"

#include <QMainWindow>
#include <QPointer>

#include <memory>

namespace Orvane::EC {
struct s_ECKeyboardConfig;
}
namespace Orvane::ConsolePanel {
class ConsoleWidget;
}

namespace Orvane::ConsoleHost {

/// The on-screen console: a window of its own with the console's keys. What it reports goes through the
/// decoder as the console's own reports do, its keys offset by the number that tells them apart; what the
/// library sends reaches it by a send route of its own. Both consoles work at the same time.
///
/// As the console on the desk it can be worked while a dialog is open, and it never takes the focus, which is
/// where the keypad types. Made before the session is started, so that it sees all that is painted; the
/// manager outlives it. On the GUI thread.
class VirtualConsole : public QMainWindow {
    Q_OBJECT

public:
    explicit VirtualConsole(const EC::s_ECKeyboardConfig& keyboard);
    ~VirtualConsole() override;

Q_SIGNALS:
    /// Any thread: the first of new datagrams waits.
    void signalPending();

private:
    /// Filled on whatever thread makes a request, which may be making one while the window goes.
    struct Inbox;

    void takeDatagrams();
    void reportKey(quint16 key, bool isDown);

    const std::shared_ptr<Inbox> m_pInbox;
    ConsolePanel::ConsoleRecorder m_recorder;
    QPointer<ConsolePanel::ConsoleWidget> m_pConsole;
    std::map<quint16, quint32> m_appKeys; ///< by the console's number
    int m_nRoute = 0;
};

} // namespace Orvane::ConsoleHost
