#pragma once

#include "bizmodel/preset.h"
#include "bizmodel/screen.h"
#include "records.h"

#include <QJsonObject>
#include <QList>
#include <QRectF>
#include <QString>

namespace Orvane::MemoryModel {
class MemoryModel;
}

namespace Orvane::ConsoleHost {

/// A layer as the user sees it.
struct LayerPicture {
    quint32 id = 0;
    QString name;
    quint32 sourceId = 0;
    QString sourceName; ///< empty without a source
    QRectF window; ///< in pixels of the mosaic
    bool isSelected = false;
};

/// A screen as the user sees it, at one moment.
struct ScreenPicture {
    MemoryModel::ScreenKey key;
    QString name;
    BizModel::Screen::State state = BizModel::Screen::State::Normal;
    bool isActive = false;
    bool isSelected = false;
    bool isFrozen = false;
    bool isFadedToBlack = false;
    bool isProgramEdited = false;
    double effectSeconds = 0;
    double progress = 0; ///< of the transition that runs, 0.0 to 1.0
    QRectF mosaic;
    QList<QRectF> outputs; ///< their parts of the mosaic
    QList<LayerPicture> program; ///< from the bottom to the top, as the preview
    QList<LayerPicture> preview;
};

struct InputPicture {
    quint32 id = 0;
    QString name;
    BizModel::CapacityMode capacity = BizModel::CapacityMode::_SL;
    bool hasSignal = false;
    bool isOverloaded = false;
    bool isMarked = false; ///< by the application
};

struct PresetPicture {
    quint16 id = 0; ///< its slot, from 1
    QString device; ///< member of the group that has it
    QString name;
    BizModel::File::FileType type = BizModel::File::FileType::PresetPVW;
    bool isActive = false;
};

/// What a device shows now.
struct DevicePicture {
    QString identity; ///< empty when no device is active
    bool isOnline = false;
    bool isSwapEnabled = false;
    bool loadsToProgram = false;
    BizModel::Preset::PresetOptMode presetMode = BizModel::Enum::Preset::Noting; ///< with no device too
    QList<ScreenPicture> screens;
    QList<InputPicture> inputs; ///< by number
    QList<PresetPicture> presets; ///< of the device and its group, by slot
};

/// The active device. On the GUI thread.
DevicePicture pictureActiveDevice(MemoryModel::MemoryModel& model);

/// "regular:1", "AUX:2": the name of a screen in commands and in the model's journal.
QString screenName(const MemoryModel::ScreenKey& key);
/// The screen of that name; id 0 when it is no such name.
MemoryModel::ScreenKey screenOfName(const QString& name);

/// Of `BizModel::Preset::PresetOptMode`, in its order.
QStringList presetModeNames();

QJsonObject screensToJson(const DevicePicture& device);
QJsonObject inputsToJson(const DevicePicture& device);
QJsonObject presetsToJson(const DevicePicture& device);

} // namespace Orvane::ConsoleHost
