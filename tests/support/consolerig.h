#pragma once

#include "consolerecorder.h"
#include "consolewire.h"
#include "ecconstants.h"
#include "ecprotocol.h"
#include "upmessage.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

namespace Orvane::TestSupport {

/// A console in the test's own process. Reports go to a real decoder and its thread, requests come back into
/// a console's recorder; what is between, sockets or nothing, is the wire's. There is one rig a process, as
/// there is one manager; make it on the GUI thread, after the application's device list.
///
/// Reports are asynchronous as on the wire: `settle()` returns when all reports so far were handled, and the
/// `wait…` functions run the event loop until the console shows what is asked.
class ConsoleRig {
public:
    explicit ConsoleRig(
        const std::shared_ptr<EC::s_ECKeyboardConfig>& keyboard,
        std::unique_ptr<ConsoleWire> wire = makeDirectWire());
    ~ConsoleRig();

    ConsoleWire& wire();

    // The console's side.

    void press(quint32 key) { report(ConsolePanel::KeyReport{true, key}); }
    void release(quint32 key) { report(ConsolePanel::KeyReport{false, key}); }
    /// Presses and releases at once.
    void tap(quint32 key);
    void tbar(quint32 value, quint8 direction = ECProxy::Client::BottomToTop);
    void report(const ConsolePanel::UpMessage& message);
    /// Waits until the decoder thread has handled every report so far, and the GUI thread what came of it.
    bool settle(int timeoutMs = 5000);
    /// Waits for the decoder thread alone, as when the GUI thread is busy.
    bool settleWithoutEventLoop(int timeoutMs = 5000);

    /// The console starts anew: it has forgotten what it showed.
    void restart();

    // What the console shows.

    ConsolePanel::ConsoleState console() const;
    ConsolePanel::KeyState key(quint16 ecKey) const;
    QString label(quint16 ecKey) const;
    bool shows(quint16 ecKey, ECProxy::Client::ECLEDColor color) const;
    bool waitShows(quint16 ecKey, ECProxy::Client::ECLEDColor color, int timeoutMs = 5000) const;
    bool waitLabel(quint16 ecKey, const QString& text, int timeoutMs = 5000) const;
    /// What `count` keys with their labels show: "green Stage", "off" when the label is blank, "unlit" when
    /// the LED was never set.
    QStringList faces(quint16 firstKey, quint16 firstLabel, int count) const;
    quint64 unreadableRequests() const;

    /// Every request since the last call, in order.
    std::vector<ConsolePanel::DownDatagram> takeRequests();
    /// The T-Bar echoes among them.
    std::vector<quint32> takeTBarLevels();

private:
    void sendMarker();

    class Private;
    const std::unique_ptr<Private> d;
};

/// The colour that a key command means, as the console gets it.
ConsolePanel::KeyColour colourOf(ECProxy::Client::ECLEDColor color);

} // namespace Orvane::TestSupport
