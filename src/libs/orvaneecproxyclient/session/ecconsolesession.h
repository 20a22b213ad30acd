#pragma once

#include "orvaneecproxyclient_global.h"

#include <QObject>
#include <QString>

#include <memory>

class QAction;

namespace Orvane::EC {
struct s_ECKeyboardConfig;
}

namespace Orvane::ECProxy::Client {

namespace Internal {
class ECConsoleSessionPrivate;
}

/// The console at work in a host application: the channel and the manager, joined and ended in the right
/// order.
///
/// Before it, on the GUI thread: the application object, the model (a `BizModel::DeviceList` that outlives
/// the session), and connections to the signals of `ECManager::instance()`. Then `start()`. The destructor
/// stops, and destroys the manager: there is one session a process, which can be stopped and started again.
///
/// While it runs, the session notices when the console's service goes and comes back. Whatever was shown is
/// sent again then, within a second: keys, labels, locks, panel lights.
///
/// Threads: everything on the GUI thread, signals included.
///
/// Failure: `start()` returns false and `errorString()` says why. What goes wrong later comes as
/// `errorOccurred()`. Both are logged, too.
class ORVANEECPROXYCLIENT_EXPORT ECConsoleSession : public QObject {
    Q_OBJECT

public:
    /// What is known of the console's service.
    enum class ServiceState {
        Unknown, ///< the session is not running, or the service is on another machine
        Absent, ///< no process has opened the service's port: requests go nowhere
        Present, ///< a process on this machine has opened the service's port
    };
    Q_ENUM(ServiceState)

    /// Does nothing yet: see `start()`.
    explicit ECConsoleSession(QObject* parent = nullptr);
    /// Stops, and destroys `ECManager`'s instance.
    ~ECConsoleSession() override;

    /// Opens the channel, gives the keys of `keyboard` their commands and lights them. A session that runs is
    /// stopped first. A keyboard that was started with before keeps its commands.
    /// @param address where the service is, as numbers
    /// @return false, with `errorString()`: there is no keyboard, the manager is gone for good, or a port
    /// cannot be opened, for one because another process receives the console's reports already
    bool start(
        const std::shared_ptr<EC::s_ECKeyboardConfig>& keyboard,
        const QString& address = QStringLiteral("127.0.0.1"));
    /// Ends the channel and waits for its threads, a second at most. No key handler runs afterwards; a key
    /// that is held keeps its time-out until the manager goes.
    void stop();

    /// True between a successful `start()` and `stop()`.
    bool isRunning() const;
    /// What went wrong last; empty after a successful `start()`.
    QString errorString() const;
    /// Whether the console's service is there, as of the last second.
    ServiceState serviceState() const;

    /// Unlocks the keypad, which no key of the console can do: to be shown in a menu or on a button. Enabled
    /// while the keypad is locked. Belongs to the session.
    QAction* unlockKeypadAction() const;

    /// Sends all again that the console shows: keys, labels, locks, panel lights.
    void repaint();

Q_SIGNALS:
    /// Something went wrong while the session runs; `errorString()` is the same text.
    void errorOccurred(const QString& text);
    /// The console's service came or went.
    void serviceStateChanged(Orvane::ECProxy::Client::ECConsoleSession::ServiceState state);

private:
    const std::unique_ptr<Internal::ECConsoleSessionPrivate> d;
};

} // namespace Orvane::ECProxy::Client
