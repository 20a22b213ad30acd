#pragma once

#include "command.h"
#include "painter_p.h"
#include "presetcallbacktype.h"

#include "bizmodel/enums.h"

#include <atomic>

namespace Orvane::ECProxy::Client::Internal {

/// What the next press of a preset key does: mode and light of the three keys that arm it, Remove, Clear all
/// and Save.
///
/// The mode itself is the application's, whose own keys share it. Each step here changes the mode first and
/// then lights the keys, so that a dark key never acts. Any thread may call any member.
class PresetModes {
public:
    using Mode = BizModel::Enum::Preset::PresetOptMode;

    /// `presetKeys` owns this object and `painter`, which paints its keys.
    PresetModes(Command& presetKeys, Painter& painter);

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
    /// Ends the mode `ClearAll` if it is the present one. The light is the caller's.
    void endClearAll();
    /// Ends Remove or Save, whichever is armed, and any other mode.
    void endAny();

    /// Darkens the clear-all key that was released.
    void offClearKey(const quint32& ecKey);

    /// Lights the key that arms `mode` as arming did, or darkens it when `mode` is not armed. Part of a
    /// repaint.
    void show(const quint32& ecKey, Mode mode);
    /// Paints the three keys like that.
    void paint();

    /// A preset was removed by key: the press that did it ends the mode `Clear`.
    bool clearStatus() const { return m_clearStatus; }
    void setClearStatus(bool armed) { m_clearStatus = armed; }
    bool takeClearStatus() { return m_clearStatus.exchange(false); }

    /// Darkens a function key. Warns when there is no such key.
    void offFunctionkeyColor(PresetCallbackType type);

private:
    /// Sends lights at once. When another thread paints meanwhile, which may have read an older mode, the
    /// three keys are painted after it.
    void sendAtOnce(const Painter::Job& send);
    void sendOff(PresetCallbackType type);
    /// Lights one key of the group.
    void updateECButtonColorPri(const quint32& ecKey, ECLEDColor color, int state = 0);
    void showAll();

    Command& m_presetKeys;
    Painter& m_painter;
    std::atomic<bool> m_clearStatus{false};
    /// The clear-all key was lit and not darkened since: the mode `ClearAll` lasts longer than its light.
    std::atomic<bool> m_bClearAllLit{false};
};

} // namespace Orvane::ECProxy::Client::Internal
