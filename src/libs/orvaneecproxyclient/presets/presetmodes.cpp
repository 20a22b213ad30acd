#include "presetmodes_p.h"

#include "log_p.h"

#include "bizmodel/devicelist.h"
#include "ec/eckeyboardconfig.h"

namespace Orvane::ECProxy::Client::Internal {

namespace {

/// State argument of the light of a key that stays armed.
constexpr int ArmedKeyState = Flashing;

/// The key that arms the mode; `eNothing` when none does.
PresetCallbackType keyOf(PresetModes::Mode mode)
{
    switch (mode) {
    case PresetModes::Mode::Clear:
        return PresetCallbackType::eRemoveSelectedPresetCB;
    case PresetModes::Mode::ClearAll:
        return PresetCallbackType::eClearPresetsCB;
    case PresetModes::Mode::Save:
        return PresetCallbackType::eSavePresetCB;
    case PresetModes::Mode::Noting:
    case PresetModes::Mode::Select:
        break;
    }
    return PresetCallbackType::eNothing;
}

} // namespace

PresetModes::PresetModes(Command& presetKeys, Painter& painter)
    : m_presetKeys(presetKeys)
    , m_painter(painter)
{
}

PresetModes::Mode PresetModes::mode() const
{
    const BizModel::DeviceList* devices = BizModel::DeviceList::instance();
    return devices ? devices->presetOperateMode() : Mode::Noting;
}

void PresetModes::setMode(Mode mode)
{
    if (BizModel::DeviceList* devices = BizModel::DeviceList::instance())
        devices->setPresetOperateMode(mode);
}

void PresetModes::endMode(Mode mode)
{
    if (this->mode() == mode)
        setMode(Mode::Noting);
}

PresetModes::Mode PresetModes::beginSelect()
{
    Mode before = Mode::Noting;
    take([&] {
        before = mode();
        if (before != Mode::Clear && before != Mode::Save)
            setMode(Mode::Select);
    });
    return before;
}

void PresetModes::endSelect()
{
    take([this] { endMode(Mode::Select); });
}

void PresetModes::toggle(const quint32& ecKey, Mode mode)
{
    take([&] {
        if (this->mode() == mode) {
            setMode(Mode::Noting);
            sendOff(keyOf(mode));
            return;
        }
        setMode(mode);
        m_bClearAllLit = false;
        updateECButtonColorPri(ecKey, ECLEDColor::Yellow, ArmedKeyState);
        sendOff(keyOf(mode == Mode::Save ? Mode::Clear : Mode::Save));
        sendOff(PresetCallbackType::eClearPresetsCB);
    });
}

void PresetModes::armClearAll(const quint32& ecKey)
{
    take([&] {
        setMode(Mode::ClearAll);
        m_bClearAllLit = true;
        updateECButtonColorPri(ecKey, ECLEDColor::Green);
        sendOff(PresetCallbackType::eRemoveSelectedPresetCB);
        sendOff(PresetCallbackType::eSavePresetCB);
    });
}

void PresetModes::end(Mode mode)
{
    take([&] {
        endMode(mode);
        if (mode == Mode::ClearAll)
            m_bClearAllLit = false;
        sendOff(keyOf(mode));
    });
}

void PresetModes::endClearAll()
{
    take([this] {
        endMode(Mode::ClearAll);
        m_bClearAllLit = false;
    });
}

void PresetModes::endAny()
{
    take([this] {
        const Mode armed = mode();
        setMode(Mode::Noting);
        if (armed == Mode::Clear || armed == Mode::Save)
            sendOff(keyOf(armed));
    });
}

void PresetModes::offFunctionkeyColor(PresetCallbackType type)
{
    take([&] {
        if (type == PresetCallbackType::eClearPresetsCB)
            m_bClearAllLit = false;
        sendOff(type);
    });
}

void PresetModes::offClearKey(const quint32& ecKey)
{
    take([&] {
        m_bClearAllLit = false;
        updateECButtonColorPri(ecKey, ECLEDColor::Off);
    });
}

void PresetModes::show(const quint32& ecKey, Mode mode)
{
    const bool isLit = mode == Mode::ClearAll ? m_bClearAllLit.load() : this->mode() == mode;
    if (!isLit)
        updateECButtonColorPri(ecKey, ECLEDColor::Off);
    else if (mode == Mode::ClearAll)
        updateECButtonColorPri(ecKey, ECLEDColor::Green);
    else
        updateECButtonColorPri(ecKey, ECLEDColor::Yellow, ArmedKeyState);
}

void PresetModes::paint()
{
    m_painter.paint("preset modes", [this] { showAll(); });
}

void PresetModes::paint(const quint32& ecKey, Mode mode)
{
    m_painter.paint({"preset mode key", ecKey}, [this, ecKey, mode] { show(ecKey, mode); });
}

void PresetModes::showAll()
{
    const auto config = m_presetKeys.ecCommandConfig();
    if (!config)
        return;
    for (const Mode mode : {Mode::Clear, Mode::ClearAll, Mode::Save}) {
        const auto buttons = config->findECButtonConfigsByOrvaneKey(quint16(keyOf(mode)));
        for (const auto& button : buttons)
            show(button->ECKey, mode);
    }
}

void PresetModes::take(const Painter::Job& step)
{
    m_painter.sendAtOnce("preset modes", step, [this] { showAll(); });
}

void PresetModes::sendOff(PresetCallbackType type)
{
    const auto config = m_presetKeys.ecCommandConfig();
    if (!config) {
        ecWarning(lcPaint, "Find preset command config error.");
        return;
    }
    if (const auto button = config->findECButtonConfigByOrvaneKey(quint16(type)))
        updateECButtonColorPri(button->ECKey, ECLEDColor::Off);
    else
        ecWarning(lcPaint, "the ecbutton is invalid");
}

void PresetModes::updateECButtonColorPri(const quint32& ecKey, ECLEDColor color, int state)
{
    m_presetKeys.updateECButtonColor(ecKey, color, state);
}

} // namespace Orvane::ECProxy::Client::Internal
