#pragma once

#include "command.h"

namespace Orvane::ECProxy::Client {

namespace Internal {
class IPresetCommandExPrivate;
class PresetExtensions;
} // namespace Internal

/// A further receiver of what happens on the preset keys: derive from it, make the object on the GUI thread,
/// hand it to `PresetCommand::registerPresetCommand()`, and delete it on the GUI thread when it is no longer
/// wanted.
///
/// Threads: a registered extension lives on the application's thread, and the preset command calls it there
/// and nowhere else, in the order of the keys. Keys of the physical console reach it queued, after the preset
/// command has begun to act on them; nobody waits for it.
///
/// What the preset command calls: `updatePageIndex()`, first when the extension is registered;
/// `selectPresetPressed()` and, right after it, `isBindProgram()`; `selectPresetRelease()`;
/// `clearPresetsPressed()`; `takePressed()` and `cutPressed()`, whose keys are the screen group's;
/// `ecTBarChanged()`. It calls nothing else, the slots of `Command` included. Results are not looked at,
/// except for that of `isBindProgram()`. By default nothing is done and false is returned.
class ORVANEECPROXYCLIENT_EXPORT IPresetCommandEx : public Command {
    Q_OBJECT

public:
    /// On the GUI thread, and without a parent.
    explicit IPresetCommandEx(QObject* parent = nullptr);
    ~IPresetCommandEx() override;

    /// A preset key went down.
    virtual bool selectPresetPressed(const quint32& ecKey);
    /// It came up.
    virtual bool selectPresetRelease(const quint32& ecKey);
    /// For the extension's own use; not called.
    /// @{
    virtual bool removeSelectedPresetPressed(const quint32& ecKey);
    virtual bool removeSelectedPresetRelease(const quint32& ecKey);
    /// @}
    /// All presets are to be removed: the clear key was held, or the question was answered with yes.
    virtual bool clearPresetsPressed();
    /// For the extension's own use; not called.
    /// @{
    virtual bool clearPresetsRelease(const quint32& ecKey);
    virtual bool savePresetPressed(const quint32& ecKey);
    virtual bool savePresetRelease(const quint32& ecKey);
    /// @}
    /// The screen group's cut key was pressed and served.
    virtual bool cutPressed(const quint32& ecKey);
    /// The screen group's take key was pressed and served.
    virtual bool takePressed(const quint32& ecKey);
    /// For the extension's own use; not called.
    /// @{
    virtual bool cutRelease(const quint32& ecKey);
    virtual bool takeRelease(const quint32& ecKey);
    /// @}
    /// The T-Bar left an end while neither it nor the keypad was locked.
    virtual void ecTBarChanged(const ECTBarValue& value);
    /// Whether the extension has bound a program of its own to the key.
    virtual bool isBindProgram(const quint32& ecKey);
    /// The preset keys show a page: another one, or one that was set up anew. By default it becomes this
    /// command's own, so that `page()` is the page on which the keys that are told next were pressed. Logs a
    /// warning when the extension is not registered.
    virtual void updatePageIndex();

    bool isAllowedKeyPressed(const quint16& ecKey) override;
    bool isAllowedKeyReleased(const quint16& ecKey) override;
    void updateSelectModeButtonConfig() override;

public Q_SLOTS:
    /// The notifications that concern these keys; see `Command`.
    /// @{
    void slotECButtonPressed(const quint32& ecKey) override;
    void slotECButtonRelease(const quint32& ecKey) override;
    /// @}

private:
    friend class Internal::PresetExtensions; // tells the page

    const std::unique_ptr<Internal::IPresetCommandExPrivate> d;
};

} // namespace Orvane::ECProxy::Client
