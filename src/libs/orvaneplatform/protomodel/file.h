#pragma once

#include <QVector>
#include <QtGlobal>

/// Contents of device files, as the device keeps them.
namespace Orvane::ProtoModel::File {

/// Colour of one key of a console.
struct s_KeypadFile {
    quint8 modelId = 0; ///< model of the console
    quint8 modelType = 0; ///< kind of that model
    quint8 buttonId = 0; ///< the console's number of the key
    quint8 buttonColor = 0; ///< an `ECLEDColor` value

    /// Member by member.
    /// @{
    friend bool operator==(const s_KeypadFile& a, const s_KeypadFile& b)
    {
        return a.modelId == b.modelId && a.modelType == b.modelType && a.buttonId == b.buttonId
            && a.buttonColor == b.buttonColor;
    }
    friend bool operator!=(const s_KeypadFile& a, const s_KeypadFile& b) { return !(a == b); }
    /// @}
};
/// Colours of a console's keys.
using s_KeypadFileArray = QVector<s_KeypadFile>;

/// Ids of screens.
using s_ScreenIdArray = QVector<quint32>;

/// Which presets were loaded last, and the screens they concerned. Presets are given by file id, 0 for
/// none.
struct s_PresetInfo {
    quint8 beforeOnePreset = 0; ///< loaded before the last one
    quint8 lastPVWPreset = 0; ///< loaded last to preview
    quint8 lastPGMPreset = 0; ///< loaded last to program
    s_ScreenIdArray pvwScn; ///< screens that the one in preview concerned
    s_ScreenIdArray pgmScn; ///< screens that the one in program concerned

    /// Member by member.
    /// @{
    friend bool operator==(const s_PresetInfo& a, const s_PresetInfo& b)
    {
        return a.beforeOnePreset == b.beforeOnePreset && a.lastPVWPreset == b.lastPVWPreset
            && a.lastPGMPreset == b.lastPGMPreset && a.pvwScn == b.pvwScn && a.pgmScn == b.pgmScn;
    }
    friend bool operator!=(const s_PresetInfo& a, const s_PresetInfo& b) { return !(a == b); }
    /// @}
};

/// What a keypad file holds.
struct s_KeypadInfo {
    s_PresetInfo presetInfo; ///< the presets loaded last
    s_KeypadFileArray keypadArray; ///< the keys' colours

    /// Member by member.
    /// @{
    friend bool operator==(const s_KeypadInfo& a, const s_KeypadInfo& b)
    {
        return a.presetInfo == b.presetInfo && a.keypadArray == b.keypadArray;
    }
    friend bool operator!=(const s_KeypadInfo& a, const s_KeypadInfo& b) { return !(a == b); }
    /// @}
};

} // namespace Orvane::ProtoModel::File
