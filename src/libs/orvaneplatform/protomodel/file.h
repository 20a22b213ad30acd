#pragma once

#include <QVector>
#include <QtGlobal>

/// Contents of device files, as the device keeps them.
namespace Orvane::ProtoModel::File {

/// Colour of one key of a console.
struct s_KeypadFile {
    quint8 modelId = 0;
    quint8 modelType = 0;
    quint8 buttonId = 0;
    quint8 buttonColor = 0;

    friend bool operator==(const s_KeypadFile& a, const s_KeypadFile& b)
    {
        return a.modelId == b.modelId && a.modelType == b.modelType && a.buttonId == b.buttonId
            && a.buttonColor == b.buttonColor;
    }
    friend bool operator!=(const s_KeypadFile& a, const s_KeypadFile& b) { return !(a == b); }
};
using s_KeypadFileArray = QVector<s_KeypadFile>;

using s_ScreenIdArray = QVector<quint32>;

/// Which presets were loaded last, and the screens they concerned. Presets are given by file id, 0 for
/// none.
struct s_PresetInfo {
    quint8 beforeOnePreset = 0;
    quint8 lastPVWPreset = 0;
    quint8 lastPGMPreset = 0;
    s_ScreenIdArray pvwScn;
    s_ScreenIdArray pgmScn;

    friend bool operator==(const s_PresetInfo& a, const s_PresetInfo& b)
    {
        return a.beforeOnePreset == b.beforeOnePreset && a.lastPVWPreset == b.lastPVWPreset
            && a.lastPGMPreset == b.lastPGMPreset && a.pvwScn == b.pvwScn && a.pgmScn == b.pgmScn;
    }
    friend bool operator!=(const s_PresetInfo& a, const s_PresetInfo& b) { return !(a == b); }
};

struct s_KeypadInfo {
    s_PresetInfo presetInfo;
    s_KeypadFileArray keypadArray;

    friend bool operator==(const s_KeypadInfo& a, const s_KeypadInfo& b)
    {
        return a.presetInfo == b.presetInfo && a.keypadArray == b.keypadArray;
    }
    friend bool operator!=(const s_KeypadInfo& a, const s_KeypadInfo& b) { return !(a == b); }
};

} // namespace Orvane::ProtoModel::File
