#pragma once

#include "command.h"

#include <memory>

namespace Orvane::ECProxy::Client {

/// Function codes of the input keys.
enum class InputCallbackType {
    eNothing = 0,
    eSelecInputCB = 1,
    ePageUp = 2,
    ePageDown = 3,
    InputCallbackTypeCnt = 4
};

namespace Internal {
class InputCommandPrivate;
}

/// The console's keys for the active device's inputs, on two pages: by ascending interface id the inputs
/// fill the keys of the first page, then those of the second. A key makes the selected layers of the active
/// screen show its input.
///
/// The color shows the state of the input: `Green` when it feeds the selected preview layer, or `Red` when it
/// does so without a signal or overloaded; otherwise `Yellow` with a signal, `Orange` overloaded, `Off`
/// without a signal. A key without an input is dark and blank.
class ORVANEECPROXYCLIENT_EXPORT InputCommand : public Command {
    Q_OBJECT

public:
    /// Made by the command manager, on the GUI thread.
    explicit InputCommand(QObject* parent = nullptr);
    ~InputCommand() override;

    QString name() const override;
    int maxPage() override;
    /// Number of select keys.
    int pageSize() const override;
    void retranslateUi() override;
    /// The items of the active device; without one, unbound copies that paint the keys dark.
    QList<std::shared_ptr<ECCommandItem>> commandItems() const override;
    /// Shows the page with its keys as they are now.
    bool updatePageOled(const quint32& oledECKey, const quint32& pageIndex) override;
    using Command::updatePageOled;
    void updateSelectModeButtonConfig() override;
    int getMinUnusedECButtonIndex(int& orderIndex) const override;
    std::shared_ptr<EC::s_ECButtonConfig> findSelectModeButtonByIndex(const int& index) const override;
    void updateKeyboard() override;
    bool containsSelectedECButtonConfigByECKey(const quint32& ecKey) const override;

    /// Rewrites the page label alone, the keys stay as they are.
    void udpateECPageOled();

public Q_SLOTS:
    /// The notifications that concern these keys; see `Command`.
    /// @{
    void slotActivedDeviceChanged() override;
    void slotDeviceRemoved(DevicePtr device) override;
    void slotActivedScreenChanged(WeakDevice device, WeakScreen screen) override;
    void slotDeviceRegulerScreenRemoved(WeakDevice device, ScreenPtr screen) override;
    void slotDeviceScreenBaseLayerRemoved(WeakDevice device, WeakScreen screen, LayerPtr layer) override;
    void slotSelectedRegularLayersChanged(WeakDevice device, WeakScreen screen) override;
    void slotDeviceInputNameChanged(WeakDevice device, WeakInterface interface) override;
    void slotInterfaceOverLoadChanged(WeakDevice device, WeakInterface interface) override;
    void slotInterfaceCapacityChanged(
        WeakDevice device, WeakSubcard subcard, WeakConnector connector) override;
    void slotDeviceInputAdded(WeakDevice device, WeakInput input) override;
    void slotDeviceInputCleared(WeakDevice device) override;
    void slotSelectedInputChanged(WeakDevice device) override;
    void slotDeviceInputRemoved(WeakDevice device, InputPtr input) override;
    void slotLayerSourceChanged(WeakDevice device, WeakScreen screen, WeakLayer layer) override;
    void slotECButtonPressed(const quint32& ecKey) override;
    void slotECButtonRelease(const quint32& ecKey) override;
    /// @}

private:
    friend class Internal::InputCommandPrivate;
    const std::unique_ptr<Internal::InputCommandPrivate> d;
};

} // namespace Orvane::ECProxy::Client
