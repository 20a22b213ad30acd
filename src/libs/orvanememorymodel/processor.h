#pragma once

#include "orvaneplatform/bizmodel/enums.h"
#include "orvaneplatform/openrequest.h"
#include "records.h"

#include <QList>
#include <QRect>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

namespace Orvane::MemoryModel {

class Worker;

/// Screens of one device that something is to be done with.
struct ScreenJob {
    /// Identity of the device (`ipMacSn`).
    QString device;
    /// Which of its screens, each once.
    QList<ScreenKey> screens;
    /// How long a take lasts; 0 for other jobs.
    std::chrono::milliseconds duration{0};
};

/// A layer of a screen of one device, as it is to be.
struct LayerJob {
    /// Identity of the device (`ipMacSn`).
    QString device;
    ScreenKey screen; ///< which of its screens
    BizModel::SceneType scene = BizModel::SceneType::PVW; ///< which scene there
    quint32 layer = 0; ///< id of the layer there
    /// Interface id of its source; 0 for none.
    quint32 input = 0;
    /// In pixels of the mosaic.
    QRect window;
};

/// What the processor behind the model does when the console or the application asks for something.
///
/// The model keeps the items, their states, the tasks and their completions, and announces every change. A
/// hook says what the hardware is told, and when and whether it has done it. Override those that your
/// hardware has; the others simulate it.
///
/// Hooks are called without a lock, on threads of the model, for several devices at once. They hold up the
/// device's next job while they run, never a key; but the hooks of layers and of one preset, which run on the
/// thread of the key that asks for it.
class Processor {
public:
    /// Ready for jobs.
    Processor();
    /// Whoever overrides hooks must see to it that none runs any more: destroy the model first.
    virtual ~Processor();

    /// @name Jobs of a device
    /// End @p end when the hardware has done it, at once or later, on any thread. On success the model
    /// changes the scenes or the flags of the screens, announces it and completes the request; a failure
    /// leaves all as it was, and its text is the request's. The simulation succeeds at once but for a take.
    /// @{

    /// Runs the transition of the screens to program. Screens whose transitions last differently come in
    /// jobs of their own. The simulation ends when the job's duration is over.
    virtual void take(const ScreenJob& job, OpenRequest end);
    /// Takes the screens to program at once.
    virtual void cut(const ScreenJob& job, OpenRequest end);
    /// Copies the screens' program to their preview.
    virtual void match(const ScreenJob& job, OpenRequest end);
    /// Freezes the screens' program, or lets it go on.
    virtual void freeze(const ScreenJob& job, bool frozen, OpenRequest end);
    /// Fades the screens' program to black, or back.
    virtual void fadeToBlack(const ScreenJob& job, bool black, OpenRequest end);
    /// Whether takes exchange program and preview.
    virtual void setSwap(const QString& device, bool swap, OpenRequest end);
    /// Which scene presets are loaded to.
    virtual void setLoadTarget(
        const QString& device, BizModel::Enum::Device::LoadToPGMStatus target, OpenRequest end);
    /// @}

    /// @name Jobs that are done when they return
    /// False, with the reason in @p error, leaves the model as it was. The simulation does nothing and
    /// succeeds.
    /// @{

    /// Moves the screens' transition to @p progress, from 0.0 to 1.0. Positions that come meanwhile are
    /// merged into one. A position that fails is passed over.
    virtual bool moveTBar(const ScreenJob& job, double progress, QString& error);
    /// Shows the stored scenes on their screens.
    virtual bool loadPreset(const QString& device, quint16 fileId, QString& error);
    /// Stores the present scenes as the preset, in the place of an earlier one.
    virtual bool storePreset(const QString& device, FileType type, quint16 fileId, QString& error);
    /// Adds screens, which the model has made already.
    virtual bool createScreens(const ScreenJob& job, QString& error);
    /// Empties the preset's slot.
    virtual bool removePreset(const QString& device, FileType type, quint16 fileId, QString& error);
    /// Keeps the device's state over a restart. The simulation writes the show file.
    virtual bool save(const QString& device, QString& error);
    /// @}

    /// @name Layers
    /// Done when they return, as the jobs above. Called when a key asks for it and the model would accept it;
    /// changes by `Control` are the application's own, and by takes and presets the device's.
    /// @{

    /// Adds the layer on top of the scene.
    virtual bool addLayer(const LayerJob& job, QString& error);
    /// Takes the layer out of the scene.
    virtual bool removeLayer(const LayerJob& job, QString& error);
    /// Gives the layer the job's window.
    virtual bool moveLayer(const LayerJob& job, QString& error);
    /// Makes the layer show the job's input.
    virtual bool bindSource(const LayerJob& job, QString& error);
    /// @p layers are the scene's ids in the new order, from the bottom to the top.
    virtual bool orderLayers(
        const QString& device, const ScreenKey& screen, BizModel::SceneType scene,
        const QList<quint32>& layers, QString& error);
    /// @}

protected:
    /// Ends the request as succeeded after the time, or as failed when the model stops before.
    void succeedAfter(std::chrono::milliseconds duration, OpenRequest end);
    /// Writes the model's show file; false with the reason in @p error, or when there is none.
    bool writeShowFile(QString& error) const;

private:
    friend class MemoryModel;
    Q_DISABLE_COPY_MOVE(Processor)

    /// Set before the first job and not changed after it.
    std::function<bool(QString& error)> m_writeShowFile;
    /// Ends the simulated jobs when their time is over.
    const std::unique_ptr<Worker> m_pTimer;
};

} // namespace Orvane::MemoryModel
