#pragma once

#include "keygroup_p.h"
#include "layerscreen_p.h"

#include <QString>

#include <optional>
#include <vector>

namespace Orvane::ECProxy::Client::Internal {

/// Which layer is on which key, and how the key looks: the items of the layer keys, in line with the preview
/// of the active screen. Each screen has items of its own. Any thread.
class LayerKeyItems : public KeyGroup {
public:
    explicit LayerKeyItems(quint16 selectKeyCode)
        : KeyGroup(KeyboardType::Layer, selectKeyCode)
    {
    }

    /// The screen's items; unbound ones without a screen or for one that has none.
    static ECCommandItemList itemsOf(const std::optional<LayerScreen>& target);
    /// Gives the screen its items, unless it has them.
    static void initScreen(const QString& ip, const BizModel::Screen& screen);
    /// Binds the active screen's preview layers to its keys, by ascending layer id, and gives the keys their
    /// looks. Keys of layers that are gone become free.
    void update();
    /// Frees the keys of all layers of those screens and gives them anew, from the first. When a selected
    /// layer was on `page` and none is now, returns the page that has one.
    std::optional<int> giveAnew(const QList<WeakScreen>& screens, int page);

    /// Empty when the key is free.
    LayerPtr findBindingLayer(const LayerScreen& target, const KeyPlace& place) const;
    /// The item of a layer's key; empty when it has none.
    ECCommandItemPtr findItem(const LayerScreen& target, const BizModel::Layer& layer) const;
    /// Binds a new layer to the key that has made it, whichever key it had got meanwhile. Empty when another
    /// layer has that key by now.
    ECCommandItemPtr bindNew(const LayerScreen& target, const KeyPlace& place, const BizModel::Layer& layer);
    /// Frees the key of a layer that is gone and returns its item; empty when the layer has no key, or
    /// another layer has taken the id.
    ECCommandItemPtr release(const QString& ip, const BizModel::Screen& screen, const BizModel::Layer& layer);
    /// Writes the layer's name to its item; empty when it has none.
    ECCommandItemPtr rename(const QString& ip, const BizModel::Screen& screen, const BizModel::Layer& layer);
    /// Drops the items of a screen that is gone.
    void forgetScreen(const BizModel::Device& device, const BizModel::Screen& screen);

private:
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
    /// Screens of the active device.
    struct TakenScreens {
        QString ip;
        QList<quint32> serverIds;
    };

    static std::optional<ScreenLayers> readActivedScreen();
    static TakenScreens readTakenScreens(const QList<WeakScreen>& screens);
    static ECCommandItemList itemsOf(const ScreenLayers& screen);
    void bindLayers(const ScreenLayers& screen) const;
};

} // namespace Orvane::ECProxy::Client::Internal
