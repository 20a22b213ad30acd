#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/bizmodel/ids.h"
#include "orvaneplatform/protomodel/file.h"

#include <QHash>
#include <QList>
#include <QRect>
#include <QSize>
#include <QString>

/// What a show consists of, as plain values: the contents of a show file.
namespace Orvane::MemoryModel {

using ScreenType = BizModel::Enum::Screen::ScreenType;
using FileType = BizModel::Enum::File::FileType;

/// A screen within its device.
struct ScreenKey {
    ScreenType type = ScreenType::RegularScreen;
    quint32 id = 0;

    friend bool operator==(const ScreenKey& a, const ScreenKey& b)
    {
        return a.type == b.type && a.id == b.id;
    }
    friend bool operator!=(const ScreenKey& a, const ScreenKey& b) { return !(a == b); }
    friend bool operator<(const ScreenKey& a, const ScreenKey& b)
    {
        return a.type != b.type ? a.type < b.type : a.id < b.id;
    }
    friend uint qHash(const ScreenKey& key, uint seed = 0)
    {
        return ::qHash(quint64(key.id) << 8 | quint64(key.type), seed);
    }
};

struct LayerRecord {
    quint32 id = 0;
    QString name;
    BizModel::LayerType type = BizModel::LayerType::Regular;
    /// Interface id of the input; 0 for none.
    quint32 inputId = 0;
    /// In pixels of the mosaic.
    QRect window;
    BizModel::CapacityMode capacity = BizModel::CapacityMode::_SL;
    bool selected = false;
};

struct ScreenOutputRecord {
    quint32 outputId = 0;
    /// Part of the mosaic that the output shows.
    QRect rect;
};

/// From the bottom to the top.
using LayerRecords = QList<LayerRecord>;

struct ScreenRecord {
    ScreenKey key;
    QString name;
    int uiScreenIndex = -1;
    bool selected = false;
    bool freeze = false;
    bool fadeToBlack = false;
    bool pgmEdit = false;
    BizModel::EffectType effectType = BizModel::EffectType::fade;
    double effectSeconds = 0.5;
    QList<ScreenOutputRecord> outputs;
    LayerRecords pgm;
    LayerRecords pvw;
};

struct ConnectorRecord {
    quint32 id = 0;
    BizModel::CapacityMode capacity = BizModel::CapacityMode::_SL;
};

struct SubcardRecord {
    quint32 id = 0;
    /// In units of a single-link layer.
    int layerCapacity = 0;
    QList<ConnectorRecord> connectors;
};

struct InputRecord {
    quint32 id = 0;
    QString name;
    quint32 subcardId = 0;
    quint32 connectorId = 0;
    BizModel::CapacityMode capacity = BizModel::CapacityMode::_SL;
    bool signal = true;
    bool overload = false;
};

struct OutputRecord {
    quint32 id = 0;
    quint32 subcardId = 0;
    int zOrder = 0;
    QSize size{1920, 1080};
    bool online = true;
};

struct PresetScreenRecord {
    ScreenKey key;
    LayerRecords layers;
};

struct PresetRecord {
    FileType type = FileType::PresetPVW;
    quint16 id = 0;
    QString name;
    QList<PresetScreenRecord> screens;
};

struct LimitsRecord {
    int regularScreens = 8;
    int auxScreens = 4;
    /// Of each scene, over all screens of the device.
    int layers = 64;
};

struct DeviceRecord {
    QString ipMacSn;
    QString groupId;
    bool online = true;
    bool multiScreens = false;
    bool consolePlugin = false;
    bool loadToPGMEnabled = false;
    bool loadToPGM = false;
    bool swap = false;
    quint16 maxPresetCount = 128;
    LimitsRecord limits;
    QList<SubcardRecord> subcards;
    QList<InputRecord> inputs;
    QList<OutputRecord> outputs;
    QList<ScreenRecord> screens;
    /// Not in the device's list of screens when there is none.
    ScreenKey activeScreen;
    QList<PresetRecord> presets;
    /// File id of the active preset, 0 for none.
    quint16 activePreset = 0;
    ProtoModel::File::s_KeypadInfo keypad;
    bool hasKeypad = false;
};

struct ShowRecord {
    /// Empty when no device is active.
    QString activeDevice;
    QList<DeviceRecord> devices;
};

/// Limits of what a show may hold, wide of every real device.
constexpr double MaxEffectSeconds = 10.0;
constexpr int MaxPresetCount = 255;
constexpr int MaxScreenIndex = 100'000;
constexpr int MaxMosaicPixels = 1'000'000;

/// True for a window with some extent within the largest mosaic.
inline bool isUsableWindow(const QRect& window)
{
    const auto fits = [](int start, int extent) {
        return start >= -MaxMosaicPixels && start <= MaxMosaicPixels && extent >= 1
            && extent <= MaxMosaicPixels;
    };
    return fits(window.x(), window.width()) && fits(window.y(), window.height());
}

} // namespace Orvane::MemoryModel
