#pragma once

#include "ecprotocol.h"
#include "orvaneecproxyclient_global.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <string>

namespace Orvane::EC {
struct s_ECKeyboardConfig;
}

namespace Orvane::ECProxy::Client {

class Command;
class ECClientDecoder;

namespace Internal {
class ECManagerPrivate;
}

/// The process-wide façade between the console and the application.
///
/// It turns every report of the console into a call on the command manager, keeps what the application asks
/// about the console (locks, DVI signals, network records, the monitor's source) and offers one operation
/// per request to the console.
///
/// Order of use: `instance()`, `addSendDownTLVRequstCB()` with the channel's `sendDownTLVRequest`, the
/// channel's up callback set to `upTLVDecodeFinished()`, `setECClientDecoder()`, `init()`; close the channel
/// before `deleteInstance()`.
///
/// Threads: everything may be called on any thread. Requests are built on the caller's thread and handed to
/// the send routes there, before the call returns. Only when another thread is just sending a request for the
/// same lock, or for the source, is the request left to that thread, which sends it next. Signals are emitted
/// on the thread that caused them, `signalECKeyClicked` always on the GUI thread; receivers there get all of
/// them queued.
///
/// Failure: a request with no send route is dropped without a trace and changes no state; one without its
/// record is logged and not sent. Operations that need the command manager do nothing, or return false, 0 or
/// nothing, before `init()`. Nothing throws.
class ORVANEECPROXYCLIENT_EXPORT ECManager : public QObject {
    Q_OBJECT

public:
    /// A way to the console: gets a datagram, returns whether it was taken.
    using SendDownTLVRequestCallbackType = std::function<bool(const QByteArray&)>;

    /// The manager, created on the first call. Null after `deleteInstance()`: it is created once a process.
    static ECManager* instance();

    /// Destroys the manager at process shutdown; no console thread may run any more.
    static void deleteInstance();

    ~ECManager() override;

    /// Takes the keyboard configuration and creates the command manager and its commands. Call it on the GUI
    /// thread, after the application's device list is there. An empty configuration leaves the commands
    /// without keys. A further call registers six more commands behind the first. Returns true.
    bool init(const std::shared_ptr<Orvane::EC::s_ECKeyboardConfig>& config);

    /// Kept for hosts that call it; no effect. Returns true.
    bool uninit();

    /// Kept for hosts that call it; no effect. Returns false.
    bool initPresetCmdEx(const std::shared_ptr<Orvane::EC::s_ECKeyboardConfig>& config);

    /// Adds a way to the console; every request goes to each route in order of addition.
    ///
    /// A route gets one whole datagram and hands it on without waiting: it is called on whatever thread makes
    /// a request (decoder, GUI, timers, the model's), on several at once, and with no lock of the library
    /// held, so it may make requests itself. Its result is ignored. An empty route is refused with a log
    /// line. A route added in this way stays; what it uses must live as long as the manager.
    void addSendDownTLVRequstCB(const SendDownTLVRequestCallbackType& callback);
    /// The same for a route that can be removed.
    /// @return its number, for `removeSendRoute()`; 0 when it was refused
    int addSendRoute(const SendDownTLVRequestCallbackType& callback);
    /// Takes a route back. A thread that is just making a request may call it once more after this returned:
    /// a route must be safe to call as long as that can happen, or keep what it uses alive by itself.
    /// @return false when there is no such route
    bool removeSendRoute(int id);

    /// The channel's decoder, for those who inject reports or watch it; only stored here.
    void setECClientDecoder(const std::weak_ptr<ECClientDecoder>& decoder);
    /// The decoder that was set; empty when its channel was closed.
    std::weak_ptr<ECClientDecoder> ecClientDecoder() const;

    /// Where the host keeps its device configuration; only stored here.
    void setDeviceConfigFilePath(const QString& path);
    /// The path that was set.
    QString getDeviceConfigFilePath() const;

    /// Takes one report of the console. Called on the decoder's thread, where the key's handler then runs.
    /// False for an unknown tag, a value of the wrong length, and for keys, T-Bar and locks before `init()`.
    bool upTLVDecodeFinished(const eECUpMessageTag& tag, const QByteArray& value);

    // Forwarded to the command manager.

    /// Whether the last key that a command knew was pressed on the on-screen console.
    bool getVirtualConsoleMode() const;
    /// Sets that flag.
    void setIsVirtualConsoleMode(bool isVirtual);
    /// Whether a screen is bound to that command's key; only the screen command's select keys have one.
    bool isAlreadyBind(const QString& commandName, const unsigned short& ecKey) const;
    /// Current page, from 0, of the command with that name; 0 when there is none.
    int page(const std::string& commandName) const;
    /// The preset command, for registering extensions; empty before `init()`.
    std::weak_ptr<Command> presetCommand() const;
    /// Rewrites the translated labels after a change of language.
    void retranslateUi();
    /// Sends the lights of the lock keys and the MVR key again, which `slotOrvanePluginModeChanged()` leaves
    /// as they are: for a console that was away.
    void showFunctionKeyLights();
    /// Takes the target of preset loads over from the host, whatever its name says: true is PGM.
    void getOpenPGMPrompt(const bool& loadToPGM);
    /// Writes the console's number of a key to `out`; 0xFFFFFFFF when no command has it.
    /// @return false, with `out` untouched, before `init()`
    bool getECKeyByOrvaneECKey(const unsigned int& orvaneECKey, unsigned int& out) const;
    /// The same lookup under its other name.
    bool getOrderIndexByECKey(const unsigned int& key, unsigned int& out) const;

    // State of the console, as it was last asked for: what the console reports of its locks goes to the
    // commands and changes nothing here.

    /// False until `lockTBar()`.
    bool isLockedTBar() const;
    /// False until `lockKeypad()`. While true, keys (but the lock key) and the T-Bar are ignored.
    bool isLockedKeypad() const;
    /// `dvi1` until `switchSource()`.
    DVISource getCurrentSource() const;
    /// Always false.
    bool echoVideoSignal() const;

    /// Emits `signalTimeTypeChanged`; the numbers are the host's.
    void modifyTimeType(int type);
    /// Emits `signalOpenPGMPrompt`.
    void setOpenPGMPrompt();
    /// Kept for hosts that call it; no effect.
    void clearAllOledText();

    /// Restores lights, luminance and the time format from the user's settings. Called by the host at start.
    /// Brightness and luminance are per cent; a setting outside 0 to 100 is clamped and logged.
    void updateECConsoleLight();

    /// Tells the console whether the active device's plug-in is visible. Called by the host at start.
    void updateECConsolePluginSettings();

    // Requests to the console.

    /// Lights one key.
    void updateECButtonColor(const std::shared_ptr<ECButtonColor>& color);
    /// Writes one label.
    void updateECOledText(const std::shared_ptr<ECOLEDText>& text);
    /// Two datagrams: first the colour, then the text.
    void updateECButtonColor(
        const std::shared_ptr<ECButtonColor>& color, const std::shared_ptr<ECOLEDText>& text);
    /// The level of the LED bar beside the T-Bar, 0 to 12, and its direction.
    void updateTBarValue(const std::shared_ptr<ECTBarValue>& value);
    /// These change what `isLockedTBar()` and `isLockedKeypad()` return, and emit nothing. The keys' lights
    /// and the host's own displays follow the signals: whoever locks or unlocks emits `signalTbarLocked` or
    /// `signalKeyboardLocked` afterwards. Called on two threads at once, the state is the one sent last.
    /// @{
    void lockTBar();
    void unlockTBar();
    void lockKeypad();
    void unlockKeypad();
    /// @}
    /// Sends once more what was asked for last of each lock, for a console that was away: a request of that
    /// time is lost, an unlock, too. Changes and emits nothing.
    void repeatLocks();
    /// Asks the console for the signal at a DVI input. The report comes later, through
    /// `upTLVDecodeFinished()`; it names all inputs that are known from then on.
    /// @param index 0 to 255; any other is refused with a log line
    /// @return the last report's signal; false when it did not name the input, when the index is refused, and
    /// without a send route
    bool dviInSignal(const int& index);
    /// Sets any one of the panel lights (gooseneck, front, logo). Brightness in per cent, sent as it is.
    void updateLightControlState(const std::shared_ptr<LightControl>& light);
    /// Darkens every key with one request.
    void closeAllButtonLED();
    /// Luminance of the console's own screens in per cent, 0 to 100, sent as it is.
    void updatepScreenLuminance(const std::shared_ptr<ScreenLuminance>& luminance);
    /// Tells the console how many screens its peripheral shows, which of them is meant, and their
    /// resolutions; the numbers are the service's and are sent as they are.
    void updateSetPeripheralDataChange(const std::shared_ptr<PeripheralControl>& peripheral);
    /// Switches the source of the secondary screen; `getCurrentSource()` returns it from then on.
    void switchSource(DVISource source);
    /// `date` as yyyy-MM-dd, `time` as hh:mm:ss; sent with colons throughout.
    void updateSystemTime(const QString& date, const QString& time);
    /// Any four texts; the console gets them joined by "@", in this order, as Latin-1.
    void updateSystemIP(
        const QString& first, const QString& second, const QString& third, const QString& fourth);
    /// Asks for a console's network record, then sends the one held here (zeros when none is).
    /// @param index of the console's network record
    void reqECDeviceIP(unsigned char index);
    /// Sends a console's network record; it is not kept here.
    void resECDeviceIP(const ECDeviceIPData& data);
    /// @param value as the service defines it; sent as it is
    void restartEventController(unsigned char value);
    /// Has the console report keyboard and mouse events, until the request to stop.
    void startKeyboardMouseEventListen();
    /// Has the console stop reporting keyboard and mouse events.
    void stopKeyboardMouseEventListen();
    /// Sends an input's signal back to the console, as every report of it is.
    void updateDVISignalStatus(DVIInSignal signal);
    /// @param value as the service defines it; sent as it is
    void resetMCU(unsigned char value);
    /// @param index of the console's network record
    /// @param mode as the service defines it; sent as it is
    void setIPMode(unsigned char index, unsigned char mode);
    /// Tells the console whether the application's plug-in is visible.
    void controlPeripheralState(bool visible);

    /// Sends a file to the console in packs, all at once and unacknowledged. Reads the whole file and returns
    /// when the last pack was handed to the routes: not a call for the decoder's thread.
    /// @param operation gives the packs after the first their tag
    /// @param fileType gives the first pack its tag: `MCU` writes, `ALL` reads; with `FPGA` it goes out empty
    /// @param packSize bytes of a pack. 0 makes one pack without data. A pack must fit a datagram (about
    /// 65000 bytes), and the number of packs 16 bits: of a larger file only what the wrapped number covers is
    /// sent.
    /// @param last not used
    /// @return false, with a log line, when the file cannot be read; false without a send route. True does
    /// not mean that the console has it.
    bool sendFile(
        const QString& path, eFlieOperType operation, eFlieType fileType, unsigned short packSize, bool last);

public Q_SLOTS:
    /// Repaints every key but the function keys.
    void slotOrvanePluginModeChanged();

Q_SIGNALS:
    /// Declared for the host's connections; never emitted by the library.
    void echoVideoSignalChanged();
    /// Declared for the host's connections; never emitted by the library.
    void dviInSignalChanged(int index);
    /// The format of the time display, by the host's numbers.
    void signalTimeTypeChanged(int type);
    /// The keypad was locked or unlocked. Emitted by the lock key, on its timer's thread, and by the host
    /// after `lockKeypad()` or `unlockKeypad()`; the commands follow it.
    void signalKeyboardLocked(bool locked);
    /// The same of the T-Bar.
    void signalTbarLocked(bool locked);
    /// Declared for the host's connections; never emitted by the library.
    void signalPropertyPopupDisable(bool disable);
    /// The secondary screen shows the application (true), or a DVI input. Emitted by the MVR key and at
    /// reports about input 0.
    void signalPropertyPopupVisible(bool visible);
    /// Emitted by `setOpenPGMPrompt()` alone.
    void signalOpenPGMPrompt();
    /// A key of the numeric keypad: the Qt::Key and its text, for the host's focused widget.
    void signalStandardKeyPressed(unsigned int key, QString text);
    /// Declared for the host's connections; never emitted by the library.
    void signalStandardKeyReleased(unsigned int key, QString text);
    /// A key of the physical console was pressed and let through the guards.
    void signalECKeyClicked(bool isAleadyBind, unsigned short nECKey);

protected:
    /// Queues clicks on keys from the first connection to `signalECKeyClicked` on.
    void connectNotify(const QMetaMethod& signal) override;

private:
    friend class ECSurfaceShadow;

    ECManager();

    const std::unique_ptr<Internal::ECManagerPrivate> d;
};

} // namespace Orvane::ECProxy::Client
