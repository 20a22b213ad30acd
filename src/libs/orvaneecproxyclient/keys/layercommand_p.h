#pragma once

#include "coalescer_p.h"
#include "eccommanditem.h"
#include "holdtimer_p.h"
#include "itemupdates_p.h"
#include "layercommand.h"
#include "selectkeys_p.h"

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

using LayerPtr = std::shared_ptr<BizModel::Layer>;
using WeakLayers = QList<std::weak_ptr<BizModel::Layer>>;

/// A screen whose layers have keys, and what its items are found by.
struct LayerScreen {
    std::shared_ptr<BizModel::Device> device;
    std::shared_ptr<BizModel::Screen> screen;
    /// The device's identity.
    QString ip;
    /// Server id of the screen's items.
    quint32 serverId = 0;
};

/// Server id of a screen's layer items: the screen's id, and for other than regular screens, which count
/// their ids apart, the type as well.
quint32 layerServerId(const BizModel::Screen& screen);

/// The active screen; none when there is none or the console does not work on screens of its type.
std::optional<LayerScreen> activedLayerScreen();

/// The layers of the preview that can have a key.
QList<LayerPtr> previewLayers(const BizModel::Screen& screen);

/// Whether a layer shows on the keys.
bool isKeyLayer(const BizModel::Layer& layer);

class LayerCommandPrivate {
public:
    static constexpr std::chrono::milliseconds HoldDuration{3000};
    static constexpr std::chrono::milliseconds FullScreenPressWindow{200};
    static constexpr std::chrono::milliseconds ResourceOutDuration{500};
    static constexpr std::chrono::milliseconds UpdateTakeDelay{10};
    static constexpr int PageCount = 8;

    explicit LayerCommandPrivate(LayerCommand* command);

    // Key handlers: select and create.

    bool selectLayerPressed(const quint32& ecKey);

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

    /// The answer to a question box, which need not be ours.
    void messageBoxClosed(bool confirmed);

    // Keys, labels and items.

    /// Page, labels and keys of the group.
    void updateLayerKeyboard();
    void initLayerCapacity();
    void updateFullScreenLabel();
    /// Binds the active screen's preview layers to its keys, by ascending layer id, and gives the keys their
    /// looks. Keys of layers that are gone become free.
    void updateECCommandItems();
    /// The same and a repaint.
    void refreshKeys();
    /// Turns to the page of a layer that was selected since the last call.
    void showNewlySelectedLayer(const LayerScreen& target);
    /// Whether the item is one of the keys that the console shows now.
    bool isShown(const QString& ip, quint32 serverId, const ECCommandItem& item) const;

    // Model changes that the keys make themselves come back as notifications.

    /// True while the operation runs: its end repaints what the notification would have.
    bool isLeftToOperation(const std::atomic<bool>& operation);
    /// True when a key removed the layer, of which the model then tells once.
    bool takeKeyRemoval(const BizModel::s_ScreenLayerId& id);
    /// Frees the key of a layer that the model has removed.
    void unbindRemovedLayer(
        const BizModel::Device& device, const BizModel::Screen& screen, const LayerPtr& layer);
    /// Drops the items of a screen that is gone.
    void forgetScreen(const BizModel::Device& device, const BizModel::Screen& screen);
    /// Frees the keys of a device that is gone.
    void forgetDevice(const BizModel::Device& device);
    /// Makes the items of the group's keys anew.
    void makeItems();
    void updateLayerName(
        const BizModel::Device& device, const BizModel::Screen& screen, const BizModel::Layer& layer);

    // A burst of layer notifications.

    void rememberUpdate(const QList<std::weak_ptr<BizModel::Screen>>& screens, int type);
    void updateAfterTake();

    LayerCommand* const m_pCommand;
    SelectKeys m_layerButtonCfgs;
    /// Both set only through `Operation`.
    std::atomic<bool> m_bIsCreatingLayerOpe{false};
    std::atomic<bool> m_bIsRemovingLayerOpe{false};

private:
    /// Marks a creation or removal by key from construction to destruction, unless another one is running.
    class Operation {
    public:
        Operation(LayerCommandPrivate* owner, std::atomic<bool>& running, const std::atomic<bool>& excluded);
        ~Operation();
        Operation(const Operation&) = delete;
        Operation& operator=(const Operation&) = delete;
        explicit operator bool() const { return m_bStarted; }

    private:
        void end();

        LayerCommandPrivate* const m_pOwner;
        std::atomic<bool>& m_running;
        bool m_bStarted;
    };

    /// A layer as its key shows it.
    struct KeyLayer {
        quint32 id = 0;
        QString name;
        ECLEDColor color = ECLEDColor::Yellow;
    };
    struct ScreenLayers {
        QString ip;
        quint32 serverId = 0;
        std::vector<quint32> layerIds; ///< ascending
        std::vector<KeyLayer> layers; ///< in the same order
    };
    /// The present preview layers of screens of the active device.
    struct TakenLayers {
        QString ip;
        ECObjectIdList ids;
    };
    /// A place among the keys.
    struct KeyPlace {
        int buttonIndex = -1;
        int orderIndex = -1;
        int pageIndex = 0;
    };

    // Creation.

    bool selectLayer(const LayerScreen& target, const LayerPtr& layer);
    LayerPtr findBindingLayer(const LayerScreen& target, const KeyPlace& place) const;
    LayerPtr createLayer(const quint32& ecKey, const KeyPlace& place);
    /// False, and the operator is told, when the screen takes no further layer now.
    static bool isReadyForNewLayer(const BizModel::Device& device, const BizModel::Screen& screen);
    std::shared_ptr<BizModel::Input> getMachingInput(const BizModel::Device& device) const;
    static QPoint getNextPostition(
        const LayerScreen& target, const std::shared_ptr<BizModel::Input>& input, const LayerPtr& probe);
    static LayerPtr makeProbeLayer(
        const BizModel::Device& device, const BizModel::Screen& screen,
        const std::shared_ptr<BizModel::Input>& input);
    void holdResourceOut(const std::shared_ptr<BizModel::Screen>& screen);
    void slotScreenStateTimeOut();
    KeyPlace keyPlace(const quint32& ecKey) const;
    static void logBinding(const quint32& ecKey, const KeyPlace& place, const LayerScreen& target);
    void showNewLayer(
        const LayerScreen& target, const quint32& ecKey, const KeyPlace& place, const LayerPtr& layer);
    /// The key's item; empty when the key has another layer by now.
    std::shared_ptr<ECCommandItem> bindNewLayer(
        const LayerScreen& target, const KeyPlace& place, const LayerPtr& layer);

    // Changes of what is selected.

    using ZOrderOperation =
        bool (ModelControl::Screen::*)(const std::weak_ptr<BizModel::Screen>&, const WeakLayers&);
    void changeZOrder(ZOrderOperation operation);
    void removeLayers(const LayerScreen& target, const QList<LayerPtr>& layers);
    /// Frees the key of a layer that is gone, and answers its item; empty when the layer has no key or
    /// another layer has taken the id.
    std::shared_ptr<ECCommandItem> freeKeyOf(
        const QString& ip, const BizModel::Screen& screen, const BizModel::Layer& layer);
    void clearAllLayer();
    void clearHeld();
    void fullnSelectedLayer();
    void darkenKey(LayerCallbackType type);

    // Items.

    static std::optional<ScreenLayers> readActivedScreen();
    static TakenLayers readTakenLayers(const QList<std::weak_ptr<BizModel::Screen>>& screens);
    void bindLayers(const ScreenLayers& screen);

    std::atomic<BizModel::CapacityMode> m_currentLayerTemplate{BizModel::CapacityMode::_SL};
    std::atomic<int> m_fullScreenPressCnt{0};
    /// A question of ours is open.
    std::atomic<bool> m_currentModule{false};
    /// A notification was left to the operation that is running.
    std::atomic<bool> m_bRefreshMissed{false};

    /// Guards the binding of layers to items.
    ItemUpdates m_itemUpdates;

    // m_keyLayerRemoveListMtx guards m_keyLayerRemoveList.
    std::mutex m_keyLayerRemoveListMtx;
    QList<BizModel::s_ScreenLayerId> m_keyLayerRemoveList;

    // m_notificationMtx guards m_updateTakeScreens, m_iUpdateTakeType, m_selectedLayerIds,
    // m_selectionServerId and m_resourceOutScreens.
    std::mutex m_notificationMtx;
    QList<std::weak_ptr<BizModel::Screen>> m_updateTakeScreens;
    int m_iUpdateTakeType = 0;
    /// The preview's selection at the last notification, and the screen that it was of.
    std::set<quint32> m_selectedLayerIds;
    quint32 m_selectionServerId = 0;
    /// Screens whose state goes back to normal with the next time-out.
    QList<std::weak_ptr<BizModel::Screen>> m_resourceOutScreens;

    // Last, so that they end first: their callbacks use all of the above.
    Coalescer m_pUpdateTakeTimer;
    HoldTimer m_pFullScreenTimer;
    HoldTimer m_pScreenStateTimer;
    HoldTimer m_pClearAllLayerTimer;
    HoldTimer m_pLayerTopZValueTimer;
    HoldTimer m_pLayerBottomZValueTimer;
};

} // namespace Orvane::ECProxy::Client::Internal
