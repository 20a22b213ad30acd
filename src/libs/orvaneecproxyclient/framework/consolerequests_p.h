#pragma once

#include "ecprotocol.h"

#include <QString>

#include <functional>
#include <memory>

class QObject;

namespace Orvane::ECProxy::Client::Internal {

/// What commands ask of the console and of the host, without knowing who carries it out.
///
/// `ECManager` installs itself when it is made and withdraws before its commands go. Any thread may call
/// any member. Hold what `installed()` returns for one step only: the withdrawal waits until nobody holds
/// it, so a request never meets a manager that is half destroyed, and one that comes later finds none.
class ConsoleRequests {
public:
    virtual ~ConsoleRequests() = default;

    /// Empty before the manager is made and after it is gone.
    static std::shared_ptr<ConsoleRequests> installed();

    /// Makes `requests` the installed ones. It must live until `withdraw()` has returned.
    static void install(ConsoleRequests& requests);

    /// Ends what `install()` began, and waits until no thread uses the requests any more. Not to be called
    /// while the calling thread holds them itself. Does nothing when none are installed.
    static void withdraw();

    // Lights and labels.

    virtual void light(const std::shared_ptr<ECButtonColor>& color) = 0;
    virtual void label(const std::shared_ptr<ECOLEDText>& text) = 0;
    /// Two datagrams: first the light, then the label.
    virtual void lightAndLabel(
        const std::shared_ptr<ECButtonColor>& color, const std::shared_ptr<ECOLEDText>& text) = 0;
    virtual void tbarLevel(const std::shared_ptr<ECTBarValue>& value) = 0;

    // Locks, as last asked for.

    virtual bool isKeypadLocked() const = 0;
    virtual bool isTBarLocked() const = 0;
    virtual void lockKeypad(bool locked) = 0;
    virtual void lockTBar(bool locked) = 0;
    /// Has the manager emit its signal of the keypad's lock.
    virtual void announceKeypadLock(bool locked) = 0;
    /// Has the manager emit its signal of the T-Bar's lock.
    virtual void announceTBarLock(bool locked) = 0;
    /// Calls the functions at each announcement, on the thread that makes it, until `receiver` is gone.
    virtual void followLocks(
        QObject* receiver, std::function<void(bool)> tbarLocked, std::function<void(bool)> keypadLocked) = 0;

    // Source of the secondary screen.

    virtual DVISource currentSource() const = 0;
    virtual void switchSource(DVISource source) = 0;
    /// Asks for an input's signal; true when the console reported one last.
    virtual bool hasDVISignal(int input) = 0;
    /// Has the manager emit its signal that the property window is to be seen or not.
    virtual void showPropertyPopup(bool visible) = 0;

    // Where the last key came from, and what the host makes of the numeric keypad.

    virtual bool isVirtualConsoleMode() const = 0;
    virtual void setVirtualConsoleMode(bool isVirtual) = 0;
    /// Has the manager emit its signal of a pressed key: the Qt::Key and its text.
    virtual void pressStandardKey(quint32 key, const QString& text) = 0;
};

// The locks as last asked for; false without a manager.

bool isKeypadLocked();
bool isTBarLocked();

} // namespace Orvane::ECProxy::Client::Internal
