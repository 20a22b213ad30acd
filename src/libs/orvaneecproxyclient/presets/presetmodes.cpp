#include "presetmodes_p.h"

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

PresetModes::PresetModes(Command& presetKeys)
    : m_presetKeys(presetKeys)
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

void PresetModes::toggle(const quint32& ecKey, Mode mode)
{
    if (this->mode() == mode) {
        end(mode);
        return;
    }
    setMode(mode);
    updateECButtonColorPri(ecKey, ECLEDColor::Yellow, ArmedKeyState);
    offFunctionkeyColor(keyOf(mode == Mode::Save ? Mode::Clear : Mode::Save));
    offFunctionkeyColor(PresetCallbackType::eClearPresetsCB);
}

void PresetModes::armClearAll(const quint32& ecKey)
{
    setMode(Mode::ClearAll);
    updateECButtonColorPri(ecKey, ECLEDColor::Green);
    offFunctionkeyColor(PresetCallbackType::eRemoveSelectedPresetCB);
    offFunctionkeyColor(PresetCallbackType::eSavePresetCB);
}

void PresetModes::end(Mode mode)
{
    setMode(Mode::Noting);
    offFunctionkeyColor(keyOf(mode));
}

void PresetModes::endIfArmed(Mode mode)
{
    if (this->mode() == mode)
        setMode(Mode::Noting);
    offFunctionkeyColor(keyOf(mode));
}

void PresetModes::endAny()
{
    const Mode armed = mode();
    setMode(Mode::Noting);
    if (armed == Mode::Clear || armed == Mode::Save)
        offFunctionkeyColor(keyOf(armed));
}

void PresetModes::show(const quint32& ecKey, Mode mode, bool isPending)
{
    if (this->mode() != mode || !isPending)
        updateECButtonColorPri(ecKey, ECLEDColor::Off);
    else if (mode == Mode::ClearAll)
        updateECButtonColorPri(ecKey, ECLEDColor::Green);
    else
        updateECButtonColorPri(ecKey, ECLEDColor::Yellow, ArmedKeyState);
}

void PresetModes::offFunctionkeyColor(PresetCallbackType type)
{
    const auto config = m_presetKeys.ecCommandConfig();
    if (!config) {
        qWarning("Find preset command config error.");
        return;
    }
    if (const auto button = config->findECButtonConfigByOrvaneKey(quint16(type)))
        updateECButtonColorPri(button->ECKey, ECLEDColor::Off);
    else
        qWarning("the ecbutton is invalid");
}

void PresetModes::updateECButtonColorPri(const quint32& ecKey, ECLEDColor color, int state)
{
    m_presetKeys.updateECButtonColor(ecKey, color, state);
}

} // namespace Orvane::ECProxy::Client::Internal
