#pragma once

#include "command.h"
#include "presetcallbacktype.h"

#include "bizmodel/enums.h"

#include <atomic>

namespace Orvane::ECProxy::Client::Internal {

/// What the next press of a preset key does: mode and light of the three keys that arm it, Remove, Clear all
/// and Save.
///
/// The mode itself is the application's, whose own keys share it. Each step here changes the mode first and
/// the lights then, so that a dark key never acts. Any thread may call any member.
class PresetModes {
public:
    using Mode = BizModel::Enum::Preset::PresetOptMode;

    /// `presetKeys` owns this object.
    explicit PresetModes(Command& presetKeys);

    /// `Noting` without a device list.
    Mode mode() const;
    void setMode(Mode mode);

    /// Arms Remove (`Clear`) or Save, or disarms it when it is armed already.
    void toggle(const quint32& ecKey, Mode mode);
    /// The clear-all key went down.
    void armClearAll(const quint32& ecKey);
    /// Sets the mode `Noting` and darkens the key that armed `mode`.
    void end(Mode mode);
    /// Darkens the key that arms `mode` and, if that is the present mode, ends it.
    void endIfArmed(Mode mode);
    /// Ends Remove or Save, whichever is armed, and any other mode.
    void endAny();

    /// Lights the key that arms `mode` as arming did while it is armed and `isPending`, otherwise darkens it.
    void show(const quint32& ecKey, Mode mode, bool isPending = true);

    /// A preset was removed by key: the press that did it ends the mode `Clear`.
    bool clearStatus() const { return m_clearStatus; }
    void setClearStatus(bool armed) { m_clearStatus = armed; }
    bool takeClearStatus() { return m_clearStatus.exchange(false); }

    /// Darkens a function key. Warns when there is no such key.
    void offFunctionkeyColor(PresetCallbackType type);

private:
    /// Lights one key of the group.
    void updateECButtonColorPri(const quint32& ecKey, ECLEDColor color, int state = 0);

    Command& m_presetKeys;
    std::atomic<bool> m_clearStatus{false};
};

} // namespace Orvane::ECProxy::Client::Internal
