#include "modelcontrol/preset.h"
#include "proxies_p.h"

#include <utility>

namespace Orvane::ModelTest::Internal {

using namespace ModelControl;

namespace {

class ProxyPreset final : public Preset {
public:
    ProxyPreset(ModelWatch& tester, std::shared_ptr<Preset> inner)
        : m_tester(tester)
        , m_pInner(std::move(inner))
    {
    }

    bool coverPreset(
        const std::weak_ptr<BizModel::Preset>& preset, BizModel::Enum::File::FileType type,
        QString& error) override
    {
        return m_tester.operate(
            {QStringLiteral("coverPreset"), {}, QStringLiteral("signalPresetCovered"), &error, false},
            [&] { return m_pInner->coverPreset(preset, type, error); });
    }
    bool checkPresetData(const std::weak_ptr<BizModel::Preset>& preset, QString& error) const override
    {
        return m_tester.operate({QStringLiteral("checkPresetData"), {}, {}, &error, false}, [&] {
            return std::as_const(*m_pInner).checkPresetData(preset, error);
        });
    }
    bool createKeypadInfo(
        const std::weak_ptr<BizModel::Preset>& preset, const Screens& screens,
        ProtoModel::File::s_KeypadInfo& keypadInfo) const override
    {
        return m_tester.operate({QStringLiteral("createKeypadInfo"), {}, {}, nullptr, false}, [&] {
            return std::as_const(*m_pInner).createKeypadInfo(preset, screens, keypadInfo);
        });
    }
    bool updatePresetModelData(
        const std::weak_ptr<BizModel::Preset>& preset, const Screens& screens, QString& error) override
    {
        return m_tester.operate(
            {QStringLiteral("updatePresetModelData"),
             {},
             QStringLiteral("signalDeviceScreenLayersChanged"),
             &error,
             true},
            [&] { return m_pInner->updatePresetModelData(preset, screens, error); });
    }

private:
    ModelWatch& m_tester;
    const std::shared_ptr<Preset> m_pInner;
};

} // namespace

std::shared_ptr<Preset> watchedPresets(ModelWatch& tester, std::shared_ptr<Preset> inner)
{
    return std::make_shared<ProxyPreset>(tester, std::move(inner));
}

} // namespace Orvane::ModelTest::Internal
