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
/// then lights the keys, so that a dark key never acts. Two consoles may take steps at the same time, each on
/// a thread of its own: the keys then end up as the mode does. Any thread may call any member.
class PresetModes {
public:
    using Mode = BizModel::Enum::Preset::PresetOptMode;

    /// `presetKeys` owns this object and `painter`, which paints its keys.
    PresetModes(Command& presetKeys, Painter& painter);

    /// `Noting` without a device list.
    Mode mode() const;

    /// A preset key was pressed: sets the mode `Select` unless Remove or Save is armed. Returns the mode
    /// before.
    Mode beginSelect();
    /// Ends the mode `Select` if it is the present one: another console may have armed a key meanwhile.
    void endSelect();

    /// Arms Remove (`Clear`) or Save, or disarms it when it is armed already.
    void toggle(const quint32& ecKey, Mode mode);
    /// The clear-all key went down.
    void armClearAll(const quint32& ecKey);
    /// Ends `mode` if it is the present one, and darkens the key that arms it.
    void end(Mode mode);
    /// Ends the mode `ClearAll` if it is the present one. The light is the caller's to send.
    void endClearAll();
    /// Ends Remove or Save, whichever is armed, and any other mode.
    void endAny();

    /// Darkens the clear-all key that was released.
    void offClearKey(const quint32& ecKey);

    /// Paints the three keys: lit as arming did, or dark.
    void paint();
    /// Paints one of them, the key that arms `mode`.
    void paint(const quint32& ecKey, Mode mode);

    /// A preset was removed by key: the press that did it ends the mode `Clear`.
    bool clearStatus() const { return m_clearStatus; }
    void setClearStatus(bool armed) { m_clearStatus = armed; }
    bool takeClearStatus() { return m_clearStatus.exchange(false); }

    /// Darkens a function key. Warns when there is no such key.
    void offFunctionkeyColor(PresetCallbackType type);

private:
    void setMode(Mode mode);
    void endMode(Mode mode);
    /// Takes a step, which changes the mode and sends lights, at once. When another thread paints or takes a
    /// step meanwhile, it may have read an older mode: the three keys are painted after it.
    void take(const Painter::Job& step);
    void sendOff(PresetCallbackType type);
    /// Lights one key of the group.
    void updateECButtonColorPri(const quint32& ecKey, ECLEDColor color, int state = 0);
    void show(const quint32& ecKey, Mode mode);
    void showAll();

    Command& m_presetKeys;
    Painter& m_painter;
    std::atomic<bool> m_clearStatus{false};
    /// The clear-all key was lit and not darkened since. Its light and the mode `ClearAll` end apart: the
    /// mode lasts until the release, and a preset key that is pressed during the hold ends it.
    std::atomic<bool> m_bClearAllLit{false};
};

} // namespace Orvane::ECProxy::Client::Internal
