#include "stormconsole.h"

#include "eccommanditem.h"
#include "ecconsolemanager.h"
#include "ecmanager.h"
#include "functioncommand.h"
#include "inputcommand.h"
#include "layercommand.h"
#include "memorydevicelist.h"
#include "presetcommand.h"
#include "screencommand.h"

#include "bizmodel/input.h"
#include "bizmodel/layer.h"
#include "bizmodel/preset.h"

#include <algorithm>
#include <functional>
#include <set>

namespace Storm {

using BizModel::SceneType;

namespace {

constexpr int RegularAndAUX = BizModel::Enum::Screen::RegularAndAUXScreens;

template <typename T> std::vector<std::shared_ptr<T>> locked(const QList<std::weak_ptr<T>>& weak)
{
    std::vector<std::shared_ptr<T>> all;
    for (const auto& each : weak) {
        if (auto object = each.lock())
            all.push_back(std::move(object));
    }
    return all;
}

/// Compares the console with the model, group by group.
class Comparison {
public:
    Comparison(TestSupport::ModelRig& rig, const Keyboard& keyboard)
        : m_rig(rig)
        , m_keyboard(keyboard)
        , m_pDevice(rig.model().deviceList().activedDevice().lock())
        , m_pScreen(m_pDevice ? m_pDevice->activedScreen().lock() : nullptr)
        , m_ip(m_pDevice ? m_pDevice->ipMacSn() : QString())
    {
    }

    QString screens() const;
    QString screenLights() const;
    QString layers() const;
    QString inputs() const;
    QString presets() const;
    QString otherKeys() const;

private:
    QList<std::weak_ptr<BizModel::Device>> members() const
    {
        return m_pDevice ? m_rig.model().deviceList().groupDevices(m_pDevice, true, false)
                         : QList<std::weak_ptr<BizModel::Device>>();
    }
    bool isInputColor(const BizModel::Input& input, ECLEDColor color) const;
    QString keyDifference(const EC::s_ECButtonConfig& key, ECLEDColor color) const;
    QString labelDifference(const EC::s_ECButtonConfig& key, const QString& text) const;
    /// Whether the keys show the items of their page, and the label the page.
    QString pageDifference(const char* group, const ECCommandItemList& items) const;
    static int countBound(const ECCommandItemList& items)
    {
        return int(
            std::count_if(items.begin(), items.end(), [](const auto& item) { return item->isBindKeyPad(); }));
    }
    static bool isRight(const ECCommandItemPtr& item, const QString& text, ECLEDColor color)
    {
        return item && item->ecOledText() == text && item->ecButtonColor() == color;
    }

    TestSupport::ModelRig& m_rig;
    const Keyboard& m_keyboard;
    const std::shared_ptr<BizModel::Device> m_pDevice;
    const std::shared_ptr<BizModel::Screen> m_pScreen;
    const QString m_ip;
};

QString Comparison::keyDifference(const EC::s_ECButtonConfig& key, ECLEDColor color) const
{
    const auto shown = m_rig.console().key(key.ECKey);
    const bool isNeverLit = !shown.isLit && color == ECLEDColor::Off;
    return isNeverLit || m_rig.console().shows(key.ECKey, color)
        ? QString()
        : QStringLiteral("key %1 does not show colour %2").arg(key.ECKey).arg(int(color));
}

QString Comparison::labelDifference(const EC::s_ECButtonConfig& key, const QString& text) const
{
    constexpr int labelChars = 32; // all of them ASCII here
    const QString shown = m_rig.console().label(key.pECOledCfg->ECKey);
    return shown == text.left(labelChars)
        ? QString()
        : QStringLiteral("key %1 is labelled \"%2\", not \"%3\"").arg(key.ECKey).arg(shown, text);
}

QString Comparison::pageDifference(const char* group, const ECCommandItemList& items) const
{
    constexpr quint16 pageUp = 2; // in every group
    const int page = ECManager::instance()->page(group);
    QString found = labelDifference(m_keyboard.key(group, pageUp), QStringLiteral("Page %1").arg(page + 1));
    for (const auto& item : items) {
        if (item->ecButtonPageIndex() != page || !found.isEmpty())
            continue;
        const auto key = m_keyboard.group(group).findECButtonConfigByECKey(quint32(item->ecButtonKey()));
        found = keyDifference(*key, item->ecButtonColor());
        if (found.isEmpty())
            found = labelDifference(*key, item->ecOledText());
    }
    return found;
}

QString Comparison::screens() const
{
    ECConsoleManager* const store = ECConsoleManager::instance();
    const auto items = store->screenECCommandItems(m_ip);
    const auto present =
        m_pDevice ? m_pDevice->screens(RegularAndAUX) : QList<std::weak_ptr<BizModel::Screen>>();
    for (const auto& screen : locked(present)) {
        const auto item = store->findBindingECItem(
            m_ip, KeyboardType::Screen, {screen->screenId(), quint32(screen->screenType())});
        if (!isRight(item, screen->name(), screen->selected() ? ECLEDColor::Green : ECLEDColor::Yellow))
            return QStringLiteral("no key is right for screen ") + screen->name();
    }
    if (countBound(items) != present.size())
        return QStringLiteral("%1 keys are bound to %2 screens").arg(countBound(items)).arg(present.size());
    return pageDifference(ScreenGroup, items);
}

QString Comparison::screenLights() const
{
    const auto any = [](const BizModel::Device& device, const std::function<bool(BizModel::Screen&)>& is) {
        const auto selected = locked(device.selectedScreen(RegularAndAUX));
        return std::any_of(selected.begin(), selected.end(), [&](const auto& screen) { return is(*screen); });
    };
    bool frozen = false, black = false;
    for (const auto& member : locked(members())) {
        frozen |= any(*member, [](BizModel::Screen& screen) { return screen.freeze(); });
        black |= any(*member, [](BizModel::Screen& screen) { return screen.FTBEnable(); });
    }
    const bool edited =
        m_pDevice && any(*m_pDevice, [](BizModel::Screen& screen) { return screen.PGMEditEnable(); });
    const auto lit = [](bool on, ECLEDColor color) { return on ? color : ECLEDColor::Off; };
    using Type = ScreenCallbackType;
    const std::pair<Type, ECLEDColor> lights[] = {
        {Type::eFreezePGMCB, lit(frozen, ECLEDColor::Red)},
        {Type::eFTBPGMCB, lit(black, ECLEDColor::Green)},
        {Type::eSetPGMEdit, lit(edited, ECLEDColor::Green)},
        {Type::eSetSwapStatusCB, lit(m_pDevice && m_pDevice->swapEnable(), ECLEDColor::Green)},
        {Type::eSetTransitionMixTypeCB, lit(m_pDevice != nullptr, ECLEDColor::Green)},
        {Type::eTakeToPGMCB, ECLEDColor::Off},
        {Type::eCutToPGMCB, ECLEDColor::Off},
        {Type::eMatchPGMCB, ECLEDColor::Off}};
    QString found;
    for (const auto& [type, color] : lights) {
        if (found.isEmpty())
            found = keyDifference(m_keyboard.key(ScreenGroup, type), color);
    }
    const QString time = m_pScreen ? QString::number(m_pScreen->switchEffectTime(), 'f', 1) : QString();
    for (const auto type : {Type::eSetTransitionTimeCB, Type::eSetTransitionTimeReduceCB}) {
        if (found.isEmpty())
            found = labelDifference(m_keyboard.key(ScreenGroup, type), time);
    }
    return found;
}

QString Comparison::layers() const
{
    ECConsoleManager* const store = ECConsoleManager::instance();
    ECCommandItemList items;
    std::vector<std::shared_ptr<BizModel::Layer>> present;
    if (m_pScreen) {
        // Screens of other types count their ids apart.
        const auto type = m_pScreen->screenType();
        const quint32 server =
            m_pScreen->screenId() | (type == BizModel::Enum::Screen::RegularScreen ? 0 : quint32(type) << 24);
        store->layerECCommandItems(m_ip, server, items);
        present = locked(m_pScreen->PVWLayers(BizModel::Enum::Layer::RegularAndAUXLayers));
        const auto selected = locked(m_pScreen->selectedLayers(SceneType::PVW));
        for (const auto& layer : present) {
            const bool isSelected = std::find(selected.begin(), selected.end(), layer) != selected.end();
            const auto item = store->findBindingECItem(m_ip, KeyboardType::Layer, {server, layer->layerId()});
            if (!isRight(item, layer->name(), isSelected ? ECLEDColor::Green : ECLEDColor::Yellow))
                return QStringLiteral("no key is right for layer ") + layer->name();
        }
    }
    if (items.isEmpty())
        store->layerECCommandItems(QString(), 0, items);
    if (countBound(items) != int(present.size()))
        return QStringLiteral("%1 keys are bound to %2 layers").arg(countBound(items)).arg(present.size());
    return pageDifference(LayerGroup, items);
}

bool Comparison::isInputColor(const BizModel::Input& input, ECLEDColor color) const
{
    if (!m_pScreen)
        return true; // as it was with the last one
    const bool isGood = input.isActive() && !input.isOverLoad();
    // Keys keep telling of a selection that has become empty, or one of several layers.
    if (color == (isGood ? ECLEDColor::Green : ECLEDColor::Red))
        return true;
    if (!input.isActive())
        return color == ECLEDColor::Off;
    return color == (input.isOverLoad() ? ECLEDColor::Orange : ECLEDColor::Yellow);
}

QString Comparison::inputs() const
{
    const auto items = ECConsoleManager::instance()->inputECCommandItems(m_ip);
    auto present =
        m_pDevice ? locked(m_pDevice->validInputs()) : std::vector<std::shared_ptr<BizModel::Input>>();
    std::sort(present.begin(), present.end(), [](const auto& left, const auto& right) {
        return left->interfaceId() < right->interfaceId();
    });
    for (int i = 0; i < items.size(); ++i) {
        const auto input = std::size_t(i) < present.size() ? present[std::size_t(i)] : nullptr;
        const bool isAsItShould = input
            ? items.at(i)->ecOledText() == input->name() && isInputColor(*input, items.at(i)->ecButtonColor())
            : isRight(items.at(i), QString(), ECLEDColor::Off);
        if (!isAsItShould)
            return QStringLiteral("input key %1 is not right").arg(i);
    }
    return pageDifference(InputGroup, items);
}

QString Comparison::presets() const
{
    ECConsoleManager* const store = ECConsoleManager::instance();
    const auto actived = m_pDevice ? m_pDevice->activedPreset().lock() : nullptr;
    const auto present = locked(m_rig.model().deviceList().groupDevicePresets(m_pDevice));
    std::set<int> slots;
    for (const auto& preset : present) {
        slots.insert(preset->fileId());
        const auto item = store->findBindingECItem(
            m_ip, KeyboardType::Preset, {preset->fileId(), quint32(preset->fileType())});
        const bool isNamed = item && item->ecButtonIndex() == preset->fileId() - 1
            && item->ecOledText().contains(preset->name());
        if (!isNamed || (preset == actived && item->ecButtonColor() != ECLEDColor::Green))
            return QStringLiteral("no key is right for preset ") + preset->name();
    }
    const int bound = countBound(store->presetECCommandItems(m_ip));
    if (bound != int(slots.size()))
        return QStringLiteral("%1 keys are bound to %2 presets").arg(bound).arg(slots.size());
    const auto group = locked(members());
    const bool isToProgram = !group.empty() && group.back()->loadToPGMEnable();
    const QString found = keyDifference(
        m_keyboard.key(PresetGroup, PresetCallbackType::eLoadToPgm),
        isToProgram ? ECLEDColor::Red : ECLEDColor::Off);
    // With the colours of the keypad file.
    return found.isEmpty()
        ? pageDifference(PresetGroup, ECManager::instance()->presetCommand().lock()->commandItems())
        : found;
}

/// The keys that are lit only while they are pressed or armed.
QString Comparison::otherKeys() const
{
    const auto dark = [this](const char* group, auto first, auto last, std::set<int> except = {}) {
        QString found;
        for (const auto& key : m_keyboard.group(group).m_buttons) {
            const int type = key->OrvaneKey;
            if (found.isEmpty() && type >= int(first) && type <= int(last) && except.count(type) == 0)
                found = keyDifference(*key, ECLEDColor::Off);
        }
        return found;
    };
    const QString found[] = {
        dark(LayerGroup, LayerCallbackType::ePageUp, LayerCallbackType::eSetSelectedLayerFullScreenCB),
        dark(InputGroup, InputCallbackType::ePageUp, InputCallbackType::ePageDown),
        dark(PresetGroup, PresetCallbackType::ePageUp, PresetCallbackType::eSavePresetCB),
        dark(ScreenGroup, ScreenCallbackType::ePageUp, ScreenCallbackType::ePageDown),
        dark(NumberGroup, 1, 5),
        // The lock of the T-Bar stays lit, and the monitor's source has lights of its own.
        dark(
            FunctionGroup, FunctionCallbackType::eSaveDataToDeviceCB, FunctionCallbackType::eLayerMirCopy,
            {int(FunctionCallbackType::eLockECTBarCB),
             int(FunctionCallbackType::eSwitchSecondaryScreenSignalCB)}),
        labelDifference(
            m_keyboard.key(LayerGroup, LayerCallbackType::eSetSelectedLayerFullScreenCB),
            QStringLiteral("Full screen"))};
    const auto first =
        std::find_if(std::begin(found), std::end(found), [](const QString& text) { return !text.isEmpty(); });
    return first == std::end(found) ? QString() : *first;
}

} // namespace

QString difference(TestSupport::ModelRig& rig, const Keyboard& keyboard)
{
    const Comparison comparison(rig, keyboard);
    for (const auto& part :
         {&Comparison::screens, &Comparison::screenLights, &Comparison::layers, &Comparison::inputs,
          &Comparison::presets, &Comparison::otherKeys}) {
        const QString found = (comparison.*part)();
        if (!found.isEmpty())
            return found;
    }
    return {};
}

} // namespace Storm
