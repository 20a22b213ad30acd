/// What happens by itself while the operator works: at the device, in the application, at the console.

#include "operator.h"

#include "ecmanager.h"
#include "memorydevicelist.h"

#include "bizmodel/input.h"
#include "bizmodel/layer.h"

namespace Storm {

using namespace ECProxy::Client;
using BizModel::SceneType;
using MemoryModel::ScreenKey;
using MemoryModel::ScreenType;

namespace {

constexpr int RegularAndAUX = BizModel::Enum::Screen::RegularAndAUXScreens;
constexpr auto FileType = MemoryModel::FileType::PresetPVW;

ScreenKey keyOf(const BizModel::Screen& screen)
{
    return {screen.screenType(), screen.screenId()};
}

} // namespace

void Operator::changeDevice()
{
    auto& control = m_rig.control();
    const auto active = device();
    switch (m_dice.below(active ? 8 : 3)) {
    default: {
        const QString next = m_dice.chance(10) ? QString()
            : m_dice.chance(75)                ? m_devices[0]
                                               : m_devices[m_dice.below(3)];
        say("activate device " + next);
        control.activateDevice(next);
        break;
    }
    case 3: {
        const bool on = m_dice.chance(50);
        say(QStringLiteral("swap %1").arg(on));
        control.setSwap(active->ipMacSn(), on);
        break;
    }
    case 4: {
        const bool on = m_dice.chance(50);
        say(QStringLiteral("load to program %1").arg(on));
        for (const QString& each : m_devices)
            control.setLoadToPGM(each, on);
        break;
    }
    case 5: {
        const auto second = m_rig.device(m_devices[1]);
        const QString former = second->groupId();
        say("change the group of the second device");
        control.setGroup(m_devices[1], m_dice.oneOf({QStringLiteral("0"), QStringLiteral("1")}));
        if (second->groupId() != former) // a change of the groups shows the first page of the inputs
            m_statement.pageShown(InputGroup, 0);
        break;
    }
    }
}

void Operator::changeScreen()
{
    const auto active = device();
    const auto screens = active ? active->screens(RegularAndAUX) : QList<std::weak_ptr<BizModel::Screen>>();
    if (screens.isEmpty())
        return say("no screen to change");
    auto& control = m_rig.control();
    const QString ip = active->ipMacSn();
    const auto some = screens[m_dice.below(screens.size())].lock();
    const ScreenKey key = keyOf(*some);
    const QString name = some->name();
    const bool on = m_dice.chance(50);
    switch (m_dice.below(11)) {
    case 0:
        say("add a screen");
        control.addScreen(ip, on ? ScreenType::RegularScreen : ScreenType::AUXScreen);
        break;
    case 1:
        if (screens.size() < 3)
            return say("keep the screens");
        say("remove screen " + name);
        control.removeScreen(ip, key);
        break;
    case 2:
        say("rename screen " + name);
        control.renameScreen(ip, key, QStringLiteral("Screen %1").arg(++m_nNames));
        break;
    case 3: {
        const int index = m_dice.below(32);
        if (!m_statement.isScreenKeyFree(index))
            return say("no free key");
        say(QStringLiteral("put screen %1 on key %2").arg(name).arg(index));
        control.setScreenIndex(ip, key, index);
        break;
    }
    case 4:
        say("select screen " + name);
        control.selectScreens(ip, {key});
        break;
    case 5:
        say("activate screen " + name);
        control.activateScreen(ip, key);
        break;
    case 6:
        say("time of screen " + name);
        control.setEffectTime(ip, key, (1 + m_dice.below(20)) * 0.1);
        break;
    case 7:
        say(QStringLiteral("freeze %1 %2").arg(name).arg(on));
        control.setFreeze(ip, key, on);
        break;
    case 8:
        say(QStringLiteral("fade %1 to black %2").arg(name).arg(on));
        control.setFTB(ip, key, on);
        break;
    case 9:
        say(QStringLiteral("edit program of %1 %2").arg(name).arg(on));
        control.setPGMEdit(ip, key, on);
        break;
    case 10:
        say("select all screens");
        control.selectScreens(ip, {key, keyOf(*screens[0].lock())});
        break;
    }
}

void Operator::changeLayer()
{
    const auto active = device();
    const auto owner = screen();
    if (!owner)
        return say("no screen for layers");
    auto& control = m_rig.control();
    const QString ip = active->ipMacSn();
    const ScreenKey key = keyOf(*owner);
    const auto layers = owner->PVWLayers(BizModel::Enum::Layer::RegularAndAUXLayers);
    const quint32 input = quint32(m_dice.below(14) + 1);
    if (layers.isEmpty() || m_dice.chance(25)) {
        say("add a layer");
        const QRect window(m_dice.below(3000), m_dice.below(900), 480, 270);
        control.addLayer(ip, key, SceneType::PVW, input, window);
        return;
    }
    const auto layer = layers[m_dice.below(layers.size())].lock();
    const quint32 id = layer->layerId();
    switch (m_dice.below(5)) {
    case 0:
        say("remove layer " + layer->name());
        control.removeLayer(ip, key, SceneType::PVW, id);
        break;
    case 1:
        say("rename layer " + layer->name());
        control.renameLayer(ip, key, SceneType::PVW, id, QStringLiteral("Layer %1").arg(++m_nNames));
        break;
    case 2:
        say("select layer " + layer->name());
        control.selectLayers(ip, key, SceneType::PVW, {id});
        break;
    case 3:
        say("deselect the layers");
        control.selectLayers(ip, key, SceneType::PVW, {});
        break;
    case 4:
        say("change the source of layer " + layer->name());
        control.setLayerSource(ip, key, SceneType::PVW, id, input);
        break;
    }
}

void Operator::changeInput()
{
    const auto active = device();
    const auto inputs = active ? active->validInputs() : QList<std::weak_ptr<BizModel::Input>>();
    if (inputs.isEmpty())
        return say("no input to change");
    auto& control = m_rig.control();
    const QString ip = active->ipMacSn();
    const quint32 id = inputs[m_dice.below(inputs.size())].lock()->interfaceId();
    const bool on = m_dice.chance(70);
    switch (m_dice.below(5)) {
    case 0:
        say(QStringLiteral("rename input %1").arg(id));
        control.renameInput(ip, id, QStringLiteral("Input %1").arg(++m_nNames));
        break;
    case 1:
    case 2:
        say(QStringLiteral("signal of input %1: %2").arg(id).arg(on));
        control.setSignal(ip, id, on);
        break;
    case 3:
        say(QStringLiteral("overload of input %1: %2").arg(id).arg(!on));
        control.setOverload(ip, id, !on);
        break;
    case 4:
        if (inputs.size() < 10)
            return say("keep the inputs");
        say(QStringLiteral("remove input %1").arg(id));
        control.removeInput(ip, id);
        break;
    }
}

void Operator::changePreset()
{
    const auto active = device();
    if (!active)
        return say("no device for presets");
    auto& control = m_rig.control();
    const QString ip = active->ipMacSn();
    // Twenty has a preset for the program, too: the documents leave open which of the two names a label
    // shows.
    const quint16 preset = quint16(m_dice.below(19) + 1);
    switch (m_dice.below(7)) {
    case 0:
    case 1:
        say(QStringLiteral("store preset %1").arg(preset));
        control.addPreset(m_dice.chance(80) ? ip : m_devices[1], FileType, preset);
        break;
    case 2:
        say(QStringLiteral("cover preset %1").arg(preset));
        control.coverPreset(ip, FileType, preset);
        break;
    case 3:
        say(QStringLiteral("rename preset %1").arg(preset));
        control.renamePreset(ip, FileType, preset, QStringLiteral("Preset %1").arg(++m_nNames));
        break;
    case 4:
        say(QStringLiteral("remove preset %1").arg(preset));
        control.removePreset(ip, FileType, preset);
        break;
    case 5:
        say(QStringLiteral("activate preset %1").arg(preset));
        control.activatePreset(ip, FileType, preset);
        break;
    case 6: {
        const int page = m_dice.below(3);
        say(QStringLiteral("show preset page %1").arg(page + 1));
        control.showPresetPage(page);
        m_statement.pageShown(PresetGroup, page);
        break;
    }
    }
}

void Operator::changeLocks()
{
    ECManager* const manager = ECManager::instance();
    const bool lock = !m_statement.isTBarLocked();
    if (m_dice.chance(50)) {
        say(QStringLiteral("the application locks the T-Bar: %1").arg(lock));
        if (lock)
            manager->lockTBar();
        else
            manager->unlockTBar();
        Q_EMIT manager->signalTbarLocked(lock);
    } else {
        say(QStringLiteral("the console locks the T-Bar: %1").arg(lock));
        m_rig.console().report(ConsolePanel::LockReport{ConsolePanel::LockTarget::TBar, lock});
        m_rig.console().settle();
    }
    m_statement.tbarLocked(lock);
}

void Operator::changeSignal()
{
    const bool on = m_dice.chance(60);
    say(QStringLiteral("signal at DVI input 0: %1").arg(on));
    m_rig.console().report(ConsolePanel::DviReport{{{0, quint8(on)}}});
    m_statement.signalAtDvi(on);
}

} // namespace Storm
