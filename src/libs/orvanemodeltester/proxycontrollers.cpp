#include "bizmodel/device.h"
#include "bizmodel/screen.h"
#include "modelcontrol/device.h"
#include "modelcontrol/screen.h"
#include "proxies_p.h"

#include <utility>

namespace Orvane::ModelTest::Internal {

using namespace ModelControl;
using BizModel::Enum::File::FileType;

namespace {

void reportNoEffect(ModelWatch& tester, const QString& call)
{
    tester.report(
        QStringLiteral("success-with-effect"), call,
        QStringLiteral("It returned and what it sets has not changed."));
}

class ProxyDevice final : public Device {
public:
    ProxyDevice(
        ModelWatch& tester, std::shared_ptr<Device> inner, const std::weak_ptr<BizModel::Device>& device)
        : Device(device)
        , m_tester(tester)
        , m_pInner(std::move(inner))
    {
    }

    bool takeCutEnabled() const override { return m_pInner->takeCutEnabled(); }
    void setActivedScreen(const std::weak_ptr<BizModel::Screen>& screen) override
    {
        const QString call = QStringLiteral("setActivedScreen");
        const Clock::time_point begin = Clock::now();
        m_pInner->setActivedScreen(screen);
        m_tester.checkDuration(call, begin, m_tester.limits().request);
        const auto wanted = screen.lock();
        const auto own = device();
        if (wanted && own && own->activedScreen().lock() != wanted)
            reportNoEffect(m_tester, call);
    }
    QList<std::weak_ptr<BizModel::Screen>> getTakeScreens(
        int screenTypeMask, const s_SwitchEffectBody& effect, bool onlySelected) const override
    {
        return m_pInner->getTakeScreens(screenTypeMask, effect, onlySelected);
    }
    bool createPresetFile(FileType type, quint16 fileId, QString& error) override
    {
        return m_tester.refusable(QStringLiteral("createPresetFile"), [&] {
            return m_pInner->createPresetFile(type, fileId, error);
        });
    }
    bool removeFile(const QList<std::weak_ptr<BizModel::File>>& files, QString& error) override
    {
        return m_pInner->removeFile(files, error); // in part is allowed
    }

private:
    ModelWatch& m_tester;
    const std::shared_ptr<Device> m_pInner;
};

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
        return m_pInner->updateEffectSpeed(seconds);
    }
    bool updateEffectType(const QList<std::pair<std::weak_ptr<BizModel::Screen>, int>>& types) override
    {
        return m_pInner->updateEffectType(types);
    }
    bool updatePGMEditStatus(const Screens& screens, bool enabled) override
    {
        return onScreens(
            QStringLiteral("updatePGMEditStatus"), screens,
            [&] { return m_pInner->updatePGMEditStatus(screens, enabled); },
            [enabled](const BizModel::Screen& screen) { return screen.PGMEditEnable() == enabled; });
    }
    std::shared_ptr<BizModel::Layer> addLayer(
        const std::weak_ptr<BizModel::Screen>& screen, BizModel::LayerType type, BizModel::SceneType scene,
        int sourceId, int sourceType, const QRect& window) override
    {
        std::shared_ptr<BizModel::Layer> layer;
        m_tester.refusable(QStringLiteral("addLayer"), [&] {
            layer = m_pInner->addLayer(screen, type, scene, sourceId, sourceType, window);
            return layer != nullptr;
        });
        return layer;
    }
    bool removeLayers(
        const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers,
        QList<std::pair<BizModel::s_ScreenLayerId, QString>>& failed) override
    {
        return m_pInner->removeLayers(screen, layers, failed); // in part is allowed
    }
    bool topZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers) override
    {
        return m_pInner->topZOrder(screen, layers);
    }
    bool incrZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers) override
    {
        return m_pInner->incrZOrder(screen, layers);
    }
    bool bottomZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers) override
    {
        return m_pInner->bottomZOrder(screen, layers);
    }
    bool decrZOrder(const std::weak_ptr<BizModel::Screen>& screen, const Layers& layers) override
    {
        return m_pInner->decrZOrder(screen, layers);
    }

private:
    /// Runs the request; one that was accepted is so on every screen when it returns.
    bool onScreens(
        const QString& call, const Screens& screens, const std::function<bool()>& request,
        const std::function<bool(const BizModel::Screen&)>& isSo)
    {
        if (!m_tester.refusable(call, request))
            return false;
        const bool done = std::all_of(screens.cbegin(), screens.cend(), [&](const auto& each) {
            const std::shared_ptr<BizModel::Screen> screen = each.lock();
            return !screen || isSo(*screen);
        });
        if (!done)
            reportNoEffect(m_tester, call);
        return true;
    }

    ModelWatch& m_tester;
    const std::shared_ptr<Screen> m_pInner;
};

} // namespace

ProxyControllerFactory::ProxyControllerFactory(ModelWatch& tester, ControllerFactory& inner)
    : m_tester(tester)
    , m_inner(inner)
{
}

std::shared_ptr<Device> ProxyControllerFactory::createDevice(const std::weak_ptr<BizModel::Device>& device)
{
    auto inner = m_inner.createDevice(device);
    return inner ? std::make_shared<ProxyDevice>(m_tester, std::move(inner), device) : nullptr;
}

std::shared_ptr<Screen> ProxyControllerFactory::createScreen(
    BizModel::Enum::Screen::ScreenType type, const std::weak_ptr<BizModel::Device>& device)
{
    auto inner = m_inner.createScreen(type, device);
    return inner ? std::make_shared<ProxyScreen>(m_tester, std::move(inner)) : nullptr;
}

std::shared_ptr<Layer> ProxyControllerFactory::createLayer(
    BizModel::LayerType type, const std::weak_ptr<BizModel::Device>& device)
{
    return m_inner.createLayer(type, device);
}

std::shared_ptr<Preset> ProxyControllerFactory::createPreset(const std::weak_ptr<BizModel::Device>& device)
{
    return m_inner.createPreset(device);
}

} // namespace Orvane::ModelTest::Internal
