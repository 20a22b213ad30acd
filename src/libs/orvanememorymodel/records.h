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

/// The model's kinds of screens.
using ScreenType = BizModel::Enum::Screen::ScreenType;
/// The model's kinds of files.
using FileType = BizModel::Enum::File::FileType;

/// A screen within its device.
struct ScreenKey {
    /// Kind of the screen, and its id, unique among the device's screens of the kind.
    /// @{
    ScreenType type = ScreenType::RegularScreen;
    quint32 id = 0;
    /// @}

    /// By kind, then by id.
    /// @{
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
    /// @}
};

/// A layer of a scene.
struct LayerRecord {
    quint32 id = 0; ///< unique within the scene, from 1
    QString name; ///< as the console shows it
    BizModel::LayerType type = BizModel::LayerType::Regular; ///< its kind
    /// Interface id of the input; 0 for none.
    quint32 inputId = 0;
    /// In pixels of the mosaic.
    QRect window;
    BizModel::CapacityMode capacity = BizModel::CapacityMode::_SL; ///< bandwidth that it takes
    bool selected = false; ///< in the console and the application
};

/// An output that is part of a screen.
struct ScreenOutputRecord {
    quint32 outputId = 0; ///< the device's output
    /// Part of the mosaic that the output shows, in pixels.
    QRect rect;
};

/// The layers of a scene, from the bottom to the top.
using LayerRecords = QList<LayerRecord>;

/// What is set on a screen.
struct ScreenSettings {
    QString name; ///< as the console shows it
    int uiScreenIndex = -1; ///< place of its key on the console; -1 for none
    bool selected = false; ///< works with the console's keys
    bool freeze = false; ///< the program is frozen
    bool fadeToBlack = false; ///< the program is black
    bool pgmEdit = false; ///< layers of the program may be changed
    BizModel::EffectType effectType = BizModel::EffectType::fade; ///< how a take mixes
    double effectSeconds = 0.5; ///< how long a take lasts, 0 to `MaxEffectSeconds`
};

/// A screen, with its scenes.
struct ScreenRecord : ScreenSettings {
    ScreenKey key; ///< which screen
    QList<ScreenOutputRecord> outputs; ///< what the mosaic is made of
    LayerRecords pgm; ///< the program
    LayerRecords pvw; ///< the preview
};

/// A connector of a card.
struct ConnectorRecord {
    quint32 id = 0; ///< unique on its card
    BizModel::CapacityMode capacity = BizModel::CapacityMode::_SL; ///< what it carries
};

/// A card of the device.
struct SubcardRecord {
    quint32 id = 0; ///< unique in the device
    /// Room for layers, in units of a single-link layer.
    int layerCapacity = 0;
    QList<ConnectorRecord> connectors; ///< for inputs
};

/// An input of the device.
struct InputRecord {
    quint32 id = 0; ///< interface id, unique in the device
    QString name; ///< as the console shows it
    quint32 subcardId = 0; ///< its card
    quint32 connectorId = 0; ///< its connector there
    BizModel::CapacityMode capacity = BizModel::CapacityMode::_SL; ///< bandwidth that a layer needs for it
    bool signal = true; ///< a signal is present
    bool overload = false; ///< the signal is more than the input can take
};

/// An output of the device.
struct OutputRecord {
    quint32 id = 0; ///< interface id, unique in the device
    quint32 subcardId = 0; ///< its card
    int zOrder = 0; ///< place among the outputs that a new screen takes from
    QSize size{1920, 1080}; ///< pixels
    bool online = true; ///< connected
};

/// What a preset keeps of a screen.
struct PresetScreenRecord {
    ScreenKey key; ///< which screen
    LayerRecords layers; ///< the stored scene
};

/// A preset of the device.
struct PresetRecord {
    FileType type = FileType::PresetPVW; ///< which scene it was stored from
    quint16 id = 0; ///< its slot, from 1
    QString name; ///< as the console shows it
    QList<PresetScreenRecord> screens; ///< loaded together
};

/// What the device has room for.
struct LimitsRecord {
    int regularScreens = 8; ///< regular screens
    int auxScreens = 4; ///< AUX screens
    /// Layers of each scene, over all screens of the device.
    int layers = 64;
};

/// What is set on a device.
struct DeviceSettings {
    QString ipMacSn; ///< identity, unique in the show
    QString groupId; ///< group; empty or the default group's for none
    bool online = true; ///< can be worked
    bool multiScreens = false; ///< several screens may be selected at once
    bool consolePlugin = false; ///< the application's plug-in is shown on the console
    bool loadToPGMEnabled = false; ///< presets may be loaded to program
    bool loadToPGM = false; ///< presets are loaded to program
    bool swap = false; ///< takes exchange program and preview
};

/// A device, with all it has.
struct DeviceRecord : DeviceSettings {
    quint16 maxPresetCount = 128; ///< slots, up to the constant `MaxPresetCount`
    LimitsRecord limits; ///< what there is room for
    QList<SubcardRecord> subcards; ///< its cards
    QList<InputRecord> inputs; ///< its inputs
    QList<OutputRecord> outputs; ///< its outputs
    QList<ScreenRecord> screens; ///< in the order of the console's keys
    /// The screen that layer keys work on. Not in the device's list of screens when there is none.
    ScreenKey activeScreen;
    QList<PresetRecord> presets; ///< by slot
    /// File id of the active preset, 0 for none.
    quint16 activePreset = 0;
    ProtoModel::File::s_KeypadInfo keypad; ///< contents of the keypad file
    bool hasKeypad = false; ///< whether there is one
};

/// A show.
struct ShowRecord {
    /// Identity of the device that the console works on. Empty when no device is active.
    QString activeDevice;
    QList<DeviceRecord> devices; ///< all of them
};

/// Limits of what a show may hold, wide of every real device.
/// @{
constexpr double MaxEffectSeconds = 10.0;
constexpr int MaxPresetCount = 255;
constexpr int MaxScreenIndex = 100'000;
constexpr int MaxMosaicPixels = 1'000'000;
/// @}

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
