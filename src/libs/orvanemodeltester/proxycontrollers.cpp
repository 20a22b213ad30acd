#include "bizmodel/device.h"
#include "bizmodel/preset.h"
#include "bizmodel/screen.h"
#include "modelcontrol/device.h"
#include "proxies_p.h"

#include <utility>

namespace Orvane::ModelTest::Internal {

using namespace ModelControl;
using BizModel::Enum::File::FileType;

namespace {

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
        const auto wrong = [&]() -> QString {
            const auto wanted = screen.lock();
            const auto own = device();
            return wanted && own && own->activedScreen().lock() != wanted
                ? QStringLiteral("Another screen is active when it returns.")
                : QString();
        };
        m_tester.operate({QStringLiteral("setActivedScreen"), wrong, {}, nullptr, false}, [&] {
            m_pInner->setActivedScreen(screen);
            return true;
        });
    }
    QList<std::weak_ptr<BizModel::Screen>> getTakeScreens(
        int screenTypeMask, const s_SwitchEffectBody& effect, bool onlySelected) const override
    {
        return m_pInner->getTakeScreens(screenTypeMask, effect, onlySelected);
    }
    bool createPresetFile(FileType type, quint16 fileId, QString& error) override
    {
        const auto wrong = [&] {
            return has(type, fileId) ? QString() : QStringLiteral("There is no such preset when it returns.");
        };
        return m_tester.operate({QStringLiteral("createPresetFile"), wrong, {}, &error, false}, [&] {
            return m_pInner->createPresetFile(type, fileId, error);
        });
    }
    bool removeFile(const QList<std::weak_ptr<BizModel::File>>& files, QString& error) override
    {
        QList<std::pair<FileType, quint16>> ids;
        for (const std::weak_ptr<BizModel::File>& each : files) {
            if (const std::shared_ptr<BizModel::File> file = each.lock())
                ids += {file->fileType(), file->fileId()};
        }
        const auto wrong = [&] {
            const bool left = std::any_of(
                ids.cbegin(), ids.cend(), [this](const auto& id) { return has(id.first, id.second); });
            return left ? QStringLiteral("A file is still there when it returns.") : QString();
        };
        const auto remove = [&] { return m_pInner->removeFile(files, error); };
        if (ids.size() < 2)
            return m_tester.operate({QStringLiteral("removeFile"), wrong, {}, &error, false}, remove);
        const bool removed = remove(); // of several a part may go
        if (!removed)
            m_tester.checkReason(QStringLiteral("removeFile"), error);
        return removed;
    }

private:
    bool has(FileType type, quint16 fileId) const
    {
        const std::shared_ptr<BizModel::Device> own = device();
        const auto files = own ? own->files(type) : QList<std::weak_ptr<BizModel::File>>();
        return std::any_of(files.cbegin(), files.cend(), [fileId](const auto& each) {
            const std::shared_ptr<BizModel::File> file = each.lock();
            return file && file->fileId() == fileId;
        });
    }

    ModelWatch& m_tester;
    const std::shared_ptr<Device> m_pInner;
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
    return inner ? watchedScreens(m_tester, std::move(inner)) : nullptr;
}

std::shared_ptr<Layer> ProxyControllerFactory::createLayer(
    BizModel::LayerType type, const std::weak_ptr<BizModel::Device>& device)
{
    auto inner = m_inner.createLayer(type, device);
    return inner ? watchedLayers(m_tester, std::move(inner)) : nullptr;
}

std::shared_ptr<Preset> ProxyControllerFactory::createPreset(const std::weak_ptr<BizModel::Device>& device)
{
    auto inner = m_inner.createPreset(device);
    return inner ? watchedPresets(m_tester, std::move(inner)) : nullptr;
}

} // namespace Orvane::ModelTest::Internal
