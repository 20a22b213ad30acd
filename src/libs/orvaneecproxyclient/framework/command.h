#pragma once

#include "ecconstants.h"
#include "ecprotocol.h"
#include "modelpointers.h"
#include "orvaneecproxyclient_global.h"

#include "orvaneplatform/bizmodel/enums.h"

#include <QList>
#include <QMap>
#include <QMessageBox>
#include <QObject>

#include <functional>
#include <memory>

namespace Orvane::EC {
struct s_ECButtonConfig;
struct s_ECCommandConfig;
struct s_ECOledConfig;
} // namespace Orvane::EC

namespace Orvane::ECProxy::Client {

class ECCommandItem;
class IPresetCommandEx;

namespace Internal {
class CommandPrivate;
class KeyTable;
class Painter;
} // namespace Internal

/// Base of the key commands: one command serves one group of console keys, the group that one entry of the
/// keyboard configuration describes.
///
/// The base owns that entry, the two tables that bind a key's function code to a handler, the current page,
/// and the helpers that light keys, write labels and turn pages. The command manager creates the commands,
/// gives each its entry with `setCommandConfig()`, routes events to it and forwards the model's
/// notifications.
///
/// Threads: key and T-Bar events of the physical console arrive on the decoder thread, the model's
/// notifications and the on-screen console's events on the GUI thread, hold timers on threads of their own.
/// Every operation may be called on any of them.
///
/// Failure: nothing throws. Without an entry, or for an unknown key, lookups return their missing value
/// (0, -1, 0xFFFFFFFF, empty) and the LED and label helpers do nothing.
class ORVANEECPROXYCLIENT_EXPORT Command : public QObject {
    Q_OBJECT

public:
    /// Handles one key; the argument is its `ECKey`, the result says whether it was handled.
    using KeyCallback = std::function<bool(const quint32&)>;

    /// Without keys until `setCommandConfig()`.
    explicit Command(QObject* parent = nullptr);
    ~Command() override;

    /// @name What a subclass is and how many pages of keys it has
    /// Called on any thread; an override holds no lock while it calls out.
    /// @{

    /// The name of the configuration's group that this command serves. Always the same.
    virtual QString name() const = 0;
    /// How many pages the page keys turn through.
    virtual int maxPage();
    /// How many select keys a page has; with 0 nothing is repainted.
    virtual int pageSize() const;
    /// Writes the labels that are words once more: the language has changed. On the GUI thread.
    virtual void retranslateUi();
    /// The items of all pages that the keys show now. A repaint sends those of the current page.
    virtual QList<std::shared_ptr<ECCommandItem>> commandItems() const;
    /// Writes the page label; false without it. Page keys call it in a paint job. An override also shows the
    /// keys of the page.
    virtual bool updatePageOled(const quint32& oledECKey, const quint32& pageIndex);
    /// The same for a label at hand; false when it is gone.
    virtual bool updatePageOled(std::weak_ptr<EC::s_ECOledConfig> oled, const quint32& pageIndex);
    /// Called when the configuration entry was set: collects the select keys and makes their items anew.
    virtual void updateSelectModeButtonConfig();
    /// The button index of the first free item, and its place on its page in `orderIndex`; -1 for none.
    virtual int getMinUnusedECButtonIndex(int& orderIndex) const;
    /// The select key at that place on a page; empty when there is none.
    virtual std::shared_ptr<EC::s_ECButtonConfig> findSelectModeButtonByIndex(const int& index) const;
    /// Shows every key of the group as it is now.
    virtual void updateKeyboard();
    /// @}

    /// @name How the routing guards treat this command's keys
    /// Called for each press or release, on its thread, so an override only looks the key up. The base reads
    /// the key's row.
    /// @{

    /// Whether something is bound to the key; the host learns it with a press on the physical console.
    virtual bool isAlreadyBind(const quint16& ecKey);
    /// Whether the key's press passes a locked keypad.
    virtual bool isLockKeyPadKey(const quint16& ecKey);
    /// Whether the key's press passes an open dialog.
    virtual bool isAllowedKeyPressed(const quint16& ecKey);
    /// Whether the press, once handled, is passed to every command's `takeKeyPressed()`.
    virtual bool isTakeKeyPressed(const quint32& ecKey);
    /// The same for `cutKeyPressed()`.
    virtual bool isCutKeyPressed(const quint32& ecKey);
    /// A take key was pressed and handled, in whatever group. The base does nothing.
    virtual void takeKeyPressed(const quint32& ecKey);
    /// The same of a cut key.
    virtual void cutKeyPressed(const quint32& ecKey);
    /// Whether the key's release passes an open dialog.
    virtual bool isAllowedKeyReleased(const quint16& ecKey);
    /// The page that the keys show.
    virtual int page();
    /// Whether the key is a select key of the group.
    virtual bool containsSelectedECButtonConfigByECKey(const quint32& ecKey) const;
    /// The host has changed whether presets load to program.
    virtual void setLoadToPGMStateChanged(const bool& loadToPGM);
    /// @}

public Q_SLOTS:
    /// The model's and the console's notifications, forwarded by the command manager: the model's on the GUI
    /// thread, those of keys and T-Bar on the thread that brings the report. The base does nothing at any of
    /// them.
    /// @{
    virtual void slotActivedDeviceChanged();
    virtual void slotDeviceRemoved(DevicePtr device);
    virtual void slotActivedScreenChanged(WeakDevice device, WeakScreen screen);
    virtual void slotSelectedScreensChanged(WeakDevice device);
    virtual void slotDeviceScreenIndexChanged(WeakDevice device, WeakScreen screen);
    virtual void slotDeviceScreenMoved(WeakDevice device, WeakScreen screen, WeakScreen other);
    virtual void slotDeviceRegulerScreenAdded(WeakDevice device, WeakScreen screen);
    virtual void slotDeviceRegulerScreenRemoved(WeakDevice device, ScreenPtr screen);
    virtual void slotDeviceScreenBaseNameChanged(WeakDevice device, WeakScreen screen);
    virtual void slotScreenBasePGMFrozenStateChanged(WeakDevice device, WeakScreen screen);
    virtual void slotScreenBasePGMFTBStateChanged(WeakDevice device, WeakScreen screen);
    virtual void slotScreenEffectChanged(WeakDevice device, WeakScreen screen);
    virtual void slotDeviceSwapStateChanged(WeakDevice device);
    virtual void slotDeviceLoadToPGMStateChanged(WeakDevice device);
    virtual void slotTbarLocked(bool locked);
    virtual void slotKeyboardLocked(bool locked);
    virtual void slotDVISignalChanged(QMap<int, bool> signalOfInput);
    virtual void slotDeviceScreenBaseLayerAdded(WeakDevice device, WeakScreen screen, WeakLayer layer);
    virtual void slotDeviceScreenBaseLayerRemoved(WeakDevice device, WeakScreen screen, LayerPtr layer);
    virtual void slotSelectedRegularLayersChanged(WeakDevice device, WeakScreen screen);
    virtual void slotNotifyUpdateLayer(const QList<WeakScreen>& screens, int type);
    virtual void slotLayerNameChanged(WeakDevice device, WeakScreen screen, WeakLayer layer);
    virtual void slotDeviceInputNameChanged(WeakDevice device, WeakInterface interface);
    virtual void slotInterfaceOverLoadChanged(WeakDevice device, WeakInterface interface);
    virtual void slotInterfaceCapacityChanged(
        WeakDevice device, WeakSubcard subcard, WeakConnector connector);
    virtual void slotDeviceInputAdded(WeakDevice device, WeakInput input);
    virtual void slotDevicePresetAdded(WeakDevice device, WeakPreset preset);
    virtual void slotDevicePresetRemoved(WeakDevice device, PresetPtr preset);
    virtual void slotDeviceDevicePresetCleared(WeakDevice device);
    virtual void slotPresetNameChanged(WeakDevice device, WeakFile file);
    virtual void slotDevicePresetSelectChanged(WeakDevice device);
    virtual void slotDevicePresetCovered(WeakDevice device, WeakPreset preset);
    virtual void slotKeypadChanged();
    virtual void slotScreenBasePGMEditStateChanged(WeakDevice device, WeakScreen screen);
    virtual void slotDeviceInputCleared(WeakDevice device);
    virtual void slotSelectedInputChanged(WeakDevice device);
    virtual void slotDeviceInputRemoved(WeakDevice device, InputPtr input);
    virtual void slotLayerSourceChanged(WeakDevice device, WeakScreen screen, WeakLayer layer);
    virtual void slotECTBarChanged(const ECTBarValue& value);
    virtual void slotECButtonPressed(const quint32& ecKey);
    virtual void slotECButtonRelease(const quint32& ecKey);
    virtual void slotFramelessMessageBoxClosed(QMessageBox::StandardButton button);
    /// @}

public:
    /// Adds an extension of the preset keys; only the preset command has any.
    virtual void registerPresetCommand(IPresetCommandEx* command);

    // Configuration and lookups.

    /// Stores the entry, then calls `updateSelectModeButtonConfig()`. The keys of the entry are not changed
    /// from then on.
    void setCommandConfig(std::shared_ptr<EC::s_ECCommandConfig> config);
    /// The entry; empty until it is set.
    std::shared_ptr<EC::s_ECCommandConfig> ecCommandConfig() const;
    /// The page that the keys show, from 0.
    int currentPageIndex() const;
    /// Sets it, without a repaint. No bound is checked.
    void updateCurrentPageIndex(int pageIndex);
    /// Whether the group has the key with that number.
    bool containsECButton(const quint32& ecKey) const;
    /// Whether that key is a select key.
    bool containsSelectedECButton(const quint32& ecKey) const;
    /// Whether the group has a key with that application number.
    bool containsECKeyByOrvaneECKey(const quint32& orvaneECKey) const;
    /// Whether a key of the group has a label with that number; labels are numbered apart from keys.
    bool containsECOled(const quint32& ecKey) const;
    /// The console's number of a key: 0 without an entry; otherwise the entry's result for the number cut to
    /// 16 bits.
    quint32 getECKeyByOrvaneECKey(const quint32& orvaneECKey) const;
    /// The console's number of the key at that place; 0xFFFFFFFF without an entry.
    quint32 getECKeyByOrderIndex(const quint16& orderIndex) const;
    /// The key's function code; 0 when there is none.
    int findOrvaneKey(const quint32& ecKey) const;
    /// The key's place on its page; -1 when there is none.
    int findECButtonOrderIndex(const quint32& ecKey) const;
    /// The key's index in the whole list, on the current page; -1 when there is none.
    int findECButtonIndex(const quint32& ecKey) const;
    /// Handlers by function code. Empty for an unknown code, which leaves an empty entry in the table.
    /// @{
    KeyCallback findECButtonPressedCBByOrvaneKey(const quint16& orvaneKey);
    KeyCallback findECButtonReleaseCBByOrvaneKey(const quint16& orvaneKey);
    /// @}
    /// Handlers by key; empty when the key has no function.
    /// @{
    KeyCallback findECButtonPressedCBByECKey(const quint32& ecKey);
    KeyCallback findECButtonReleaseCBByECKey(const quint32& ecKey);
    /// @}

    /// @name LEDs and labels
    /// Sent on the caller's thread. A label takes 32 bytes of UTF-8 and is cut there.
    /// @{

    /// Gives the record the color's red, green and blue. `ledColor` is an `ECLEDColor`.
    void fillButtonColor(std::shared_ptr<ECButtonColor> color, const int& ledColor) const;
    /// Gives the record the text, cut where the label ends.
    void fillOledText(std::shared_ptr<ECOLEDText> oled, const QString& text) const;
    /// Lights a key. `state` is an `eButtonState`.
    void updateECButton(const quint32& buttonKey, const quint32& ecKey, ECLEDColor color, const int& state);
    /// Lights the key with that number; warns when there is none.
    void updateECButtonColor(const quint32& ecKey, ECLEDColor color, const int& state = 0);
    /// Lights a key in the color, or turns it off.
    void setEcButtonLedColor(const quint32& buttonKey, const quint32& ecKey, bool on, ECLEDColor color);
    /// Turns off the keys for whose function code `isMeant` returns true.
    void darkenKeys(const std::function<bool(quint16)>& isMeant);
    /// Writes a label.
    void updateECOledText(const quint32& oledKey, const quint32& ecKey, const QString& text);
    /// Writes the label of the key with that number.
    void updateECOledTextByBtnECKey(const quint32& ecKey, const QString& text);
    /// Sets the level of the LED bar beside the T-Bar.
    void updateTBarValue(const ECTBarValue& value);
    /// @}

    // Paging.

    /// Handlers of the page keys: a press turns the page, as far as there is one, and lights the key; its
    /// release darkens it. True when the group has the key.
    /// @{
    bool pageUpPressed(const quint32& ecKey);
    bool pageUpRelease(const quint32& ecKey);
    bool pageDownPressed(const quint32& ecKey);
    bool pageDownRelease(const quint32& ecKey);
    /// @}
    /// Sends the items of the current page to the console. While another thread paints this command's keys,
    /// the call returns at once and that thread sends them next.
    void updateCommandKeypad(Enum::UpdateConsoleType type);
    /// Sends one item; nothing when no item has that key on that page.
    void updateBindedECButton(const quint32& ecButtonKey, const quint32& pageIndex);

    // Steps that several commands share.

    /// True for the screens that keys work on: regular and AUX.
    /// @{
    static bool checkScreenType(BizModel::Enum::Screen::ScreenType type);
    static bool checkScreenType(WeakScreen screen);
    /// @}
    /// Locks or unlocks the console's keypad, then has the manager emit `signalKeyboardLocked`.
    void lockedKeyPad(bool locked);
    /// Locks or unlocks the T-Bar, then has the manager emit `signalTbarLocked`.
    void lockedTBar(bool locked);
    /// The manager's flag: the last key that a command knew was pressed on the on-screen console.
    /// @{
    bool getVirtualConsoleMode() const;
    void setIsVirtualConsoleMode(bool isVirtual);
    /// @}
    /// Has the manager emit its signal of that name.
    void signalStandardKeyPressed(quint32 key, QString text);

    /// Ends what a press began whose release was dropped by a guard that has ended: holds and repeats stop
    /// without acting, light and label show what a repaint would send. Nothing for a key without a row.
    void putKeyToRest(const quint32& ecKey);

    /// Sends what a repaint sends and leaves all else as it is: the keys are not read from the model anew, no
    /// hold ends. For a thread that draws the keys rather than sending them.
    void showSurface();

    /// All that the framework knows of this command's keys.
    const Internal::KeyTable& keyTable() const;

protected:
    /// Gives the command its keys and binds their handlers. For a constructor.
    void setKeyTable(Internal::KeyTable table);
    /// Binds a function code to its handlers, for a command without a table; an empty handler is not bound.
    void bindKey(quint32 orvaneKey, KeyCallback pressed, KeyCallback released);
    /// Runs the handler bound to a key, if there is one.
    /// @{
    void dispatchPressed(const quint32& ecKey);
    void dispatchReleased(const quint32& ecKey);
    /// @}

    /// Paints the lights and labels of this command's keys.
    Internal::Painter& painter() const;
    /// Ends the painting; jobs call virtuals, so this is the first line of each subclass's destructor.
    void stopPainting();

    /// Turns off the keys that are lit only while pressed.
    void darkenMomentaryKeys();
    /// Shows every configured key as its row says, row by row.
    void showKeys();

    /// The first key with that function code; empty when the group has none.
    std::shared_ptr<EC::s_ECButtonConfig> findFunctionButton(quint16 orvaneKey) const;
    /// The page label: the one of the key with that function code. Warns, and is empty, when the key or its
    /// label is missing.
    std::shared_ptr<EC::s_ECOledConfig> findPageOled(quint16 pageUpOrvaneKey) const;

private:
    bool hasTrait(const quint32& ecKey, unsigned trait) const;
    std::shared_ptr<EC::s_ECButtonConfig> findButton(const quint32& ecKey) const;
    bool turnPage(const quint32& ecKey, int step, const char* end);
    void showTurnedPage(const quint32& ecKey);
    void paintPage(Enum::UpdateConsoleType type);

    const std::unique_ptr<Internal::CommandPrivate> d;
};

} // namespace Orvane::ECProxy::Client
