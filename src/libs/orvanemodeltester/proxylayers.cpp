#include "bizmodel/layer.h"
#include "bizmodel/screen.h"
#include "modelcontrol/layer.h"
#include "proxies_p.h"

#include <utility>

namespace Orvane::ModelTest::Internal {

using namespace ModelControl;

namespace {

class ProxyLayer final : public Layer {
public:
    ProxyLayer(ModelWatch& tester, std::shared_ptr<Layer> inner)
        : m_tester(tester)
        , m_pInner(std::move(inner))
    {
    }

    bool setSelected(
        const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers, BizModel::SelectedType mode,
        bool notify) override
    {
        const auto wrong = [&]() -> QString {
            const Layers selected = selectedOf(screen);
            if (mode == BizModel::SelectedType::Cover && selected.size() > layers.size())
                return QStringLiteral("More than what was to replace the selection is selected.");
            const bool all = std::all_of(layers.cbegin(), layers.cend(), [&](const auto& layer) {
                return layer.expired() || contains(selected, layer);
            });
            return all ? QString() : QStringLiteral("A layer is not selected when it returns.");
        };
        return m_tester.operate({QStringLiteral("layer setSelected"), wrong, {}, nullptr, false}, [&] {
            return m_pInner->setSelected(screen, layers, mode, notify);
        });
    }
    bool cancelSelected(
        const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers, bool notify) override
    {
        const auto wrong = [&]() -> QString {
            const Layers selected = selectedOf(screen);
            const bool any = std::any_of(
                layers.cbegin(), layers.cend(), [&](const auto& layer) { return contains(selected, layer); });
            return any ? QStringLiteral("A layer is still selected when it returns.") : QString();
        };
        return m_tester.operate({QStringLiteral("layer cancelSelected"), wrong, {}, nullptr, false}, [&] {
            return m_pInner->cancelSelected(screen, layers, notify);
        });
    }
    bool updateWindow(const std::weak_ptr<BizModel::Layer>& layer, const QRect& window) override
    {
        const auto wrong = [&]() -> QString {
            const std::shared_ptr<BizModel::Layer> present = layer.lock();
            return present && present->windowRect() != window
                ? QStringLiteral("The layer has another window when it returns.")
                : QString();
        };
        return m_tester.operate({QStringLiteral("updateWindow"), wrong, {}, nullptr, false}, [&] {
            return m_pInner->updateWindow(layer, window);
        });
    }
    bool bindSource(const Layers& layers, quint32 sourceId, int sourceType) override
    {
        const auto wrong = [&]() -> QString {
            const bool all = std::all_of(layers.cbegin(), layers.cend(), [&](const auto& each) {
                const std::shared_ptr<BizModel::Layer> layer = each.lock();
                return !layer || (layer->sourceId() == sourceId && layer->sourceType() == sourceType);
            });
            return all ? QString() : QStringLiteral("A layer shows another source when it returns.");
        };
        return m_tester.operate({QStringLiteral("bindSource"), wrong, {}, nullptr, false}, [&] {
            return m_pInner->bindSource(layers, sourceId, sourceType);
        });
    }

private:
    static Layers selectedOf(const std::weak_ptr<BizModel::Screen>& screen)
    {
        const std::shared_ptr<BizModel::Screen> owner = screen.lock();
        return owner ? owner->selectedLayers() : Layers();
    }
    static bool contains(const Layers& layers, const std::weak_ptr<BizModel::Layer>& wanted)
    {
        const std::shared_ptr<BizModel::Layer> layer = wanted.lock();
        return layer && std::any_of(layers.cbegin(), layers.cend(), [&layer](const auto& each) {
                   return each.lock() == layer;
               });
    }

    ModelWatch& m_tester;
    const std::shared_ptr<Layer> m_pInner;
};

} // namespace

std::shared_ptr<Layer> watchedLayers(ModelWatch& tester, std::shared_ptr<Layer> inner)
{
    return std::make_shared<ProxyLayer>(tester, std::move(inner));
}

} // namespace Orvane::ModelTest::Internal
