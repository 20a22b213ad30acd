#pragma once

#include "activeddevicewatch_p.h"
#include "coalescer_p.h"
#include "holdtimer_p.h"
#include "keytable_p.h"
#include "layercommand.h"
#include "layerhold_p.h"
#include "layerkeyitems_p.h"
#include "layeroperation_p.h"
#include "painter_p.h"

#include "bizmodel/ids.h"
#include "modelcontrol/screen.h"

#include <QList>
#include <QPoint>
#include <QString>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <vector>

namespace Orvane::ECProxy::Client::Internal {

class LayerCommandPrivate {
public:
    static constexpr std::chrono::milliseconds FullScreenPressWindow{200};
    static constexpr std::chrono::milliseconds ResourceOutDuration{500};
    static constexpr std::chrono::milliseconds UpdateTakeDelay{10};
    static constexpr int PageCount = 8;
    /// The repaint after a single request for one key that another thread's painting has overtaken.
    static constexpr const char* LateKey = "late key";

    /// The layers selected on a screen's preview. By object, for a new layer may get a removed one's id.
    struct Selection {
        WeakScreen screen;
        std::set<WeakLayer, std::owner_less<>> layers;
    };

    explicit LayerCommandPrivate(LayerCommand* command);

    static const std::vector<KeyRow<LayerCommandPrivate>>& keys();

    // Key handlers: select and create.

    bool selectLayerPressed(const quint32& ecKey);
    bool selectLayerRelease(const quint32& ecKey);

    // Key handlers: change what is selected.

    bool removeSelectedLayerPressed(const quint32& ecKey);
    bool clearLayersPressed(const quint32& ecKey);
    bool clearLayersRelease(const quint32& ecKey);
    bool setSelectedLayerTopZValuePressed(const quint32& ecKey);
    bool setSelectedLayerTopZValueRelease(const quint32& ecKey);
    bool setSelectedLayerBottomZValuePressed(const quint32& ecKey);
    bool setSelectedLayerBottomZValueRelease(const quint32& ecKey);
    bool changeNewLayerDefaultCapacityPressed(const quint32& ecKey);
    bool setSelectedLayerFullScreenPressed(const quint32& ecKey);
    bool darkenReleasedKey(const quint32& ecKey);

    // What a press began, ended without acting.

    template <LayerHold LayerCommandPrivate::*Hold> void cancelHold(const quint32&)
    {
        (this->*Hold).cancel();
    }
    void cancelFullScreen(const quint32& ecKey);
    /// Ends the holds that were begun for another screen than the active one.
    void endHoldsOfOtherScreens();
    void endHolds(const char* reason);

    /// The user has closed a question box, ours or another's.
    void messageBoxClosed(bool confirmed);

    // Keys, labels and items.

    /// Shows page, labels and keys of the group.
    void updateLayerKeyboard();
    /// The label of the page, and its keys.
    void showPage();
    void showPageLabel();
    void repaintPage();
    /// For a device that was not active before: its first page.
    void turnToActivedDevice();
    void initLayerCapacity();
    /// The labels of the keys that are no select keys.
    void showLabels();
    void showCapacity(const quint32& ecKey);
    void showFullScreen(const quint32& ecKey);
    /// Binds the active screen's preview layers to its keys, by ascending layer id, and gives the keys their
    /// looks. Keys of layers that are gone become free.
    void updateECCommandItems();
    /// The same and a repaint.
    void refreshKeys();
    /// Turns to the page of a layer that was selected since the selection was last remembered.
    void showNewlySelectedLayer(const LayerScreen& target);
    /// Whether the item is one of the keys that the console shows now.
    bool isShown(const QString& ip, quint32 serverId, const ECCommandItem& item) const;

    /// Remembers what is selected on the active screen; returns what was remembered before.
    Selection rememberSelection();

    // Model changes that the keys make themselves come back as notifications.

    /// True, once for each layer, when a key has removed it.
    bool takeKeyRemoval(const BizModel::s_ScreenLayerId& id);
    /// Frees the key of a layer that the model has removed.
    void unbindRemovedLayer(
        const BizModel::Device& device, const BizModel::Screen& screen, const LayerPtr& layer);
    /// Drops the items of a screen that is gone.
    void forgetScreen(const BizModel::Device& device, const BizModel::Screen& screen);
    /// Frees the keys of a device that is gone.
    void forgetDevice(const BizModel::Device& device);
    void updateLayerName(
        const BizModel::Device& device, const BizModel::Screen& screen, const BizModel::Layer& layer);

    // A burst of layer notifications.

    void rememberUpdate(const QList<WeakScreen>& screens, int type);
    void updateAfterTake();

    LayerCommand* const m_pCommand;
    LayerKeyItems m_items{quint16(LayerCallbackType::eSelectLayerCB)};
    LayerOperation m_operation;

private:
    /// A creation or removal by key, from construction to destruction; false when another one is running.
    class OperationRun {
    public:
        OperationRun(LayerCommandPrivate* owner, LayerOperation::Kind kind);
        ~OperationRun();
        OperationRun(const OperationRun&) = delete;
        OperationRun& operator=(const OperationRun&) = delete;
        explicit operator bool() const { return m_excluding == LayerOperation::Kind::None; }
        /// What was running when this one was to begin.
        LayerOperation::Kind excluding() const { return m_excluding; }

    private:
        LayerCommandPrivate* const m_pOwner;
        const LayerOperation::Kind m_excluding;
    };

    /// What a question box is about that asks before it clears.
    struct ClearQuestion {
        LayerTarget target;
        BizModel::SceneType scene;
    };

    // Creation.

    bool selectLayer(const LayerScreen& target, const LayerPtr& layer);
    LayerPtr createLayer(const quint32& ecKey, const KeyPlace& place);
    /// False, with a notice to the operator, when the screen takes no further layer now.
    static bool isReadyForNewLayer(const BizModel::Device& device, const BizModel::Screen& screen);
    InputPtr getMachingInput(const BizModel::Device& device) const;
    static QPoint getNextPostition(const LayerScreen& target, const InputPtr& input, const LayerPtr& probe);
    static LayerPtr makeProbeLayer(
        const BizModel::Device& device, const BizModel::Screen& screen, const InputPtr& input);
    void holdResourceOut(const ScreenPtr& screen);
    void slotScreenStateTimeOut();
    KeyPlace keyPlace(const quint32& ecKey) const;
    static void logBinding(const quint32& ecKey, const KeyPlace& place, const LayerScreen& target);
    void showNewLayer(
        const LayerScreen& target, const quint32& ecKey, const KeyPlace& place, const LayerPtr& layer);

    // Changes of what is selected.

    using ZOrderOperation = bool (ModelControl::Screen::*)(const WeakScreen&, const QList<WeakLayer>&);
    void changeZOrder(const LayerTarget& target, ZOrderOperation operation);
    void removeLayers(const LayerScreen& target, const QList<LayerPtr>& layers);
    /// The number of the key that became free, for the log; -1 when the layer had none, or a repaint after
    /// the removal of another layer has freed it already.
    static int freedKey(const std::shared_ptr<ECCommandItem>& item);
    /// Clears the scene that the operator was asked about, or else the one that the screen's operations aim
    /// at.
    void clearAllLayer(const LayerTarget& target, std::optional<BizModel::SceneType> asked = {});
    void fullnSelectedLayer();
    void darkenFunction(LayerCallbackType type);
    QList<std::shared_ptr<EC::s_ECButtonConfig>> functionButtons(LayerCallbackType type) const;

    std::atomic<BizModel::CapacityMode> m_currentLayerTemplate{BizModel::CapacityMode::_SL};
    std::atomic<int> m_fullScreenPressCnt{0};

    ActivedDeviceWatch m_activedDevice;
    // m_keyLayerRemoveListMtx guards m_keyLayerRemoveList: the remove key appends on its thread, the
    // notification of the removal takes out on the GUI thread.
    std::mutex m_keyLayerRemoveListMtx;
    QList<BizModel::s_ScreenLayerId> m_keyLayerRemoveList;

    // m_notificationMtx guards m_updateTakeScreens, m_iUpdateTakeType, m_selection, m_currentModule and
    // m_resourceOutScreens, which key presses, notifications and time-outs share, each on its thread.
    std::mutex m_notificationMtx;
    QList<WeakScreen> m_updateTakeScreens;
    int m_iUpdateTakeType = 0;
    /// The active screen's selection at the last notification.
    Selection m_selection;
    /// Our question that is open. Only a Yes ends it.
    std::optional<ClearQuestion> m_currentModule;
    /// Screens whose state goes back to normal with the next time-out.
    QList<WeakScreen> m_resourceOutScreens;

    // Last, so that they end first: their callbacks use all of the above.
    Coalescer m_pUpdateTakeTimer;
    HoldTimer m_pFullScreenTimer;
    HoldTimer m_pScreenStateTimer;
    LayerHold m_pClearAllLayerTimer;
    LayerHold m_pLayerTopZValueTimer;
    LayerHold m_pLayerBottomZValueTimer;
};

} // namespace Orvane::ECProxy::Client::Internal
