#include "bizmodel/layer.h"
#include "bizmodel/screen.h"
#include "modelcontrol/screen.h"
#include "proxies_p.h"

#include <utility>

namespace Orvane::ModelTest::Internal {

using namespace ModelControl;

namespace {

using LayerPtr = std::shared_ptr<BizModel::Layer>;

QList<LayerPtr> present(const QList<std::weak_ptr<BizModel::Layer>>& layers)
{
    QList<LayerPtr> list;
    for (const std::weak_ptr<BizModel::Layer>& each : layers) {
        if (LayerPtr layer = each.lock())
            list += layer;
    }
    return list;
}

QList<LayerPtr> scene(const std::weak_ptr<BizModel::Screen>& screen, BizModel::SceneType type)
{
    const std::shared_ptr<BizModel::Screen> owner = screen.lock();
    return owner ? present(owner->layers(type, BizModel::LayerType::AllLayerType)) : QList<LayerPtr>();
}

/// Whether the move of the marked layers, to the front or to the back, all the way or by one, made @p now of
/// @p before.
bool isMoved(
    const QList<LayerPtr>& before, const QList<LayerPtr>& now, const QList<LayerPtr>& marked, bool toFront,
    bool allTheWay)
{
    QList<LayerPtr> expected = before;
    const auto isMarked = [&marked](const LayerPtr& layer) { return marked.contains(layer); };
    if (!toFront)
        std::reverse(expected.begin(), expected.end());
    if (allTheWay) {
        std::stable_partition(
            expected.begin(), expected.end(), [&](const LayerPtr& layer) { return !isMarked(layer); });
    } else {
        for (int i = expected.size() - 2; i >= 0; --i) {
            if (isMarked(expected[i]) && !isMarked(expected[i + 1]))
                expected.swapItemsAt(i, i + 1);
        }
    }
    if (!toFront)
        std::reverse(expected.begin(), expected.end());
    return now == expected;
}

class ProxyScreen final : public Screen {
public:
    ProxyScreen(ModelWatch& tester, std::shared_ptr<Screen> inner)
        : m_tester(tester)
        , m_pInner(std::move(inner))
    {
    }

    bool setSelected(
        const Screens& screens, BizModel::SelectedType mode, bool notify, bool sendToDevice) override
    {
        return onScreens(
            QStringLiteral("setSelected"), screens,
            [&] { return m_pInner->setSelected(screens, mode, notify, sendToDevice); },
            [](const BizModel::Screen& screen) { return screen.selected(); });
    }
    bool cancelSelected(const Screens& screens, bool notify) override
    {
        return onScreens(
            QStringLiteral("cancelSelected"), screens,
            [&] { return m_pInner->cancelSelected(screens, notify); },
            [](const BizModel::Screen& screen) { return !screen.selected(); });
    }
    bool updateEffectSpeed(const QList<std::pair<std::weak_ptr<BizModel::Screen>, double>>& seconds) override
    {
        const auto wrong = [&]() -> QString {
            const bool done = std::all_of(seconds.cbegin(), seconds.cend(), [](const auto& each) {
                const std::shared_ptr<BizModel::Screen> screen = each.first.lock();
                // A device may count in coarser steps than a tenth of a second has parts.
                return !screen || qAbs(screen->switchEffectTime() - each.second) < 0.05;
            });
            return done ? QString() : QStringLiteral("A screen's time is another one when it returns.");
        };
        return m_tester.operate({QStringLiteral("updateEffectSpeed"), wrong, {}, nullptr, false}, [&] {
            return m_pInner->updateEffectSpeed(seconds);
        });
    }
    bool updateEffectType(const QList<std::pair<std::weak_ptr<BizModel::Screen>, int>>& types) override
    {
        return m_tester.operate({QStringLiteral("updateEffectType"), {}, {}, nullptr, false}, [&] {
            return m_pInner->updateEffectType(types);
        });
    }
    bool updatePGMEditStatus(const Screens& screens, bool enabled) override
    {
        return onScreens(
            QStringLiteral("updatePGMEditStatus"), screens,
            [&] { return m_pInner->updatePGMEditStatus(screens, enabled); },
            [enabled](const BizModel::Screen& screen) { return screen.PGMEditEnable() == enabled; });
    }
    std::shared_ptr<BizModel::Layer> addLayer(
        const std::weak_ptr<BizModel::Screen>& screen, BizModel::LayerType type, BizModel::SceneType target,
        int sourceId, int sourceType, const QRect& window) override
    {
        const std::shared_ptr<BizModel::Screen> owner = screen.lock();
        const quint32 id = owner ? owner->nextLayerId(target, type) : 0;
        LayerPtr layer;
        const auto wrong = [&]() -> QString {
            const QList<LayerPtr> now = scene(screen, target);
            if (now.isEmpty() || now.last() != layer)
                return QStringLiteral("The new layer is not on top of the scene when it returns.");
            if (layer->layerId() != id)
                return QStringLiteral("The new layer has id %1, and nextLayerId() was %2.")
                    .arg(layer->layerId())
                    .arg(id);
            return layer->windowRect() == window && layer->sourceId() == quint32(sourceId)
                ? QString()
                : QStringLiteral("The new layer has another window or source when it returns.");
        };
        m_tester.operate({QStringLiteral("addLayer"), wrong, {}, nullptr, false}, [&] {
            layer = m_pInner->addLayer(screen, type, target, sourceId, sourceType, window);
            return layer != nullptr;
        });
        return layer;
    }
    bool removeLayers(
        const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers,
        QList<std::pair<BizModel::s_ScreenLayerId, QString>>& failed) override
    {
        QList<BizModel::s_ScreenLayerId> ids;
        for (const LayerPtr& layer : present(layers))
            ids += layer->screenLayerId();
        bool all = false;
        const auto wrong = [&]() -> QString {
            for (const BizModel::s_ScreenLayerId& id : std::as_const(ids)) {
                const auto fault = std::find_if(
                    failed.cbegin(), failed.cend(), [&id](const auto& each) { return each.first == id; });
                const bool stays = isThere(screen, id);
                if (stays != (fault != failed.cend()) || (stays && fault->second.isEmpty()))
                    return QStringLiteral("A layer stays without a reason, or is gone with one.");
            }
            return all == failed.isEmpty() ? QString()
                                           : QStringLiteral("It did not return whether all layers are gone.");
        };
        m_tester.operate({QStringLiteral("removeLayers"), wrong, {}, nullptr, false}, [&] {
            all = m_pInner->removeLayers(screen, layers, failed);
            return true; // in part is allowed
        });
        return all;
    }
    bool topZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers) override
    {
        return move(QStringLiteral("topZOrder"), &Screen::topZOrder, screen, layers, true, true);
    }
    bool incrZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers) override
    {
        return move(QStringLiteral("incrZOrder"), &Screen::incrZOrder, screen, layers, true, false);
    }
    bool bottomZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers) override
    {
        return move(QStringLiteral("bottomZOrder"), &Screen::bottomZOrder, screen, layers, false, true);
    }
    bool decrZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers) override
    {
        return move(QStringLiteral("decrZOrder"), &Screen::decrZOrder, screen, layers, false, false);
    }

private:
    using Move = bool (Screen::*)(const std::weak_ptr<BizModel::Screen>&, const Layers&);

    static bool isThere(const std::weak_ptr<BizModel::Screen>& screen, const BizModel::s_ScreenLayerId& id)
    {
        const QList<LayerPtr> now = scene(screen, id.sceneType);
        return std::any_of(
            now.cbegin(), now.cend(), [&id](const LayerPtr& layer) { return layer->screenLayerId() == id; });
    }

    /// Runs the request; one that was accepted is so on every screen when it returns.
    bool onScreens(
        const QString& call, const Screens& screens, const std::function<bool()>& request,
        const std::function<bool(const BizModel::Screen&)>& isSo)
    {
        const auto wrong = [&]() -> QString {
            const bool done = std::all_of(screens.cbegin(), screens.cend(), [&](const auto& each) {
                const std::shared_ptr<BizModel::Screen> screen = each.lock();
                return !screen || isSo(*screen);
            });
            return done ? QString() : QStringLiteral("It returned and what it sets has not changed.");
        };
        return m_tester.operate({call, wrong, {}, nullptr, false}, request);
    }
    bool move(
        const QString& call, Move request, const std::weak_ptr<BizModel::Screen>& screen,
        const Layers& layers, bool toFront, bool allTheWay)
    {
        const QList<LayerPtr> marked = present(layers);
        const QList<LayerPtr> program = scene(screen, BizModel::SceneType::PGM);
        const QList<LayerPtr> preview = scene(screen, BizModel::SceneType::PVW);
        const auto wrong = [&]() -> QString {
            const bool moved =
                isMoved(program, scene(screen, BizModel::SceneType::PGM), marked, toFront, allTheWay)
                && isMoved(preview, scene(screen, BizModel::SceneType::PVW), marked, toFront, allTheWay);
            return moved ? QString() : QStringLiteral("The layers lie in another order when it returns.");
        };
        return m_tester.operate(
            {call, wrong, {}, nullptr, false}, [&] { return (*m_pInner.*request)(screen, layers); });
    }

    ModelWatch& m_tester;
    const std::shared_ptr<Screen> m_pInner;
};

} // namespace

std::shared_ptr<Screen> watchedScreens(ModelWatch& tester, std::shared_ptr<Screen> inner)
{
    return std::make_shared<ProxyScreen>(tester, std::move(inner));
}

} // namespace Orvane::ModelTest::Internal
