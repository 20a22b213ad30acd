#pragma once

#include "command.h"

#include <memory>

namespace Orvane::ECProxy::Client {

/// Function codes of the layer keys.
enum class LayerCallbackType {
    eNothing = 0,
    eSelectLayerCB = 1,
    ePageUp = 2,
    ePageDown = 3,
    eRemoveSelectedLayerCB = 4,
    eClearLayersCB = 5,
    eSetSelectedLayerTopZValueCB = 6,
    eSetSelectedLayerBottomZValueCB = 7,
    eChangeNewLayerDefaultCapacityCB = 8,
    eSetSelectedLayerFullScreenCB = 9,
    LayerCallbackTypeCnt = 10
};

namespace Internal {
class LayerCommandPrivate;
}

/// The console's keys for the layers of the active screen's preview.
///
/// A lit select key selects its layer, a dark one makes a layer and keeps it. The other keys work on the
/// selected layers: remove, clear all (held), to the front or the back (one step, or all the way when held),
/// fill an output or the whole screen; and one chooses the capacity of new layers. `Green` is a selected
/// layer, `Yellow` another one, `Off` a free key.
///
/// Each screen has key items of its own, so its layers are on the same keys when the operator comes back.
///
/// Threads: as for `Command`. Creation and removal by key exclude each other; a key that would begin one
/// during the other is refused. Refusals are logged and, where the operator would wonder, shown in the
/// status bar.
class ORVANEECPROXYCLIENT_EXPORT LayerCommand : public Command {
    Q_OBJECT

public:
    /// Made by the command manager, on the GUI thread.
    explicit LayerCommand(QObject* parent = nullptr);
    ~LayerCommand() override;

    QString name() const override;
    int maxPage() override;
    /// Number of select keys.
    int pageSize() const override;
    /// Rewrites the labels in the present language.
    void retranslateUi() override;
    /// The items of the active screen; without one, unbound copies that paint the keys dark.
    QList<std::shared_ptr<ECCommandItem>> commandItems() const override;
    /// Shows the page with its keys as they are now.
    bool updatePageOled(const quint32& oledECKey, const quint32& pageIndex) override;
    using Command::updatePageOled;
    void updateSelectModeButtonConfig() override;
    /// The button index of the first free key and, in `orderIndex`, its place on its page; -1 when all keys
    /// have layers.
    int getMinUnusedECButtonIndex(int& orderIndex) const override;
    std::shared_ptr<EC::s_ECButtonConfig> findSelectModeButtonByIndex(const int& index) const override;
    void updateKeyboard() override;
    bool isAllowedKeyReleased(const quint16& ecKey) override;
    bool containsSelectedECButtonConfigByECKey(const quint32& ecKey) const override;

    /// Gives the keys anew to the layers of the screens that the last notifications named, after a take or a
    /// preset has put others in their place.
    void updateLayerECButtonAfterTake();

public Q_SLOTS:
    /// The notifications that concern these keys; see `Command`.
    /// @{
    void slotActivedDeviceChanged() override;
    void slotDeviceRemoved(DevicePtr device) override;
    void slotActivedScreenChanged(WeakDevice device, WeakScreen screen) override;
    void slotSelectedScreensChanged(WeakDevice device) override;
    void slotDeviceRegulerScreenAdded(WeakDevice device, WeakScreen screen) override;
    void slotDeviceRegulerScreenRemoved(WeakDevice device, ScreenPtr screen) override;
    void slotDeviceScreenBaseLayerAdded(WeakDevice device, WeakScreen screen, WeakLayer layer) override;
    void slotDeviceScreenBaseLayerRemoved(WeakDevice device, WeakScreen screen, LayerPtr layer) override;
    void slotSelectedRegularLayersChanged(WeakDevice device, WeakScreen screen) override;
    void slotNotifyUpdateLayer(const QList<WeakScreen>& screens, int type) override;
    void slotLayerNameChanged(WeakDevice device, WeakScreen screen, WeakLayer layer) override;
    void slotECButtonPressed(const quint32& ecKey) override;
    void slotECButtonRelease(const quint32& ecKey) override;
    void slotFramelessMessageBoxClosed(QMessageBox::StandardButton button) override;
    /// The end of a burst of layer notifications.
    void slotUpdateTakeScreenTimeout();
    /// @}

private:
    friend class Internal::LayerCommandPrivate;
    const std::unique_ptr<Internal::LayerCommandPrivate> d;
};

} // namespace Orvane::ECProxy::Client
