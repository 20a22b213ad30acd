#pragma once

#include "control.h"
#include "modelsignals.h"
#include "operations.h"
#include "processor.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>

namespace Orvane::MemoryModel {

struct ShowRecord;

/// A complete model for the console, in memory: it stands in for the device list, the controllers, the
/// request, parallel and sampling threads and the resource check, from construction to destruction.
///
/// Create it on the application's thread before the console is started, load a show, and destroy it after
/// the console's threads have ended. State changes under the model's lock; signals and callbacks come after
/// the lock is released, on the thread that made the change.
class MemoryModel final {
public:
    /// @p processor does what hardware has to do; empty for a simulated one.
    explicit MemoryModel(std::unique_ptr<Processor> processor = nullptr);
    /// Stops first.
    ~MemoryModel();

    /// Ends all threads. Requests that have not been carried out complete with false; transitions end
    /// without a change of scenes; later requests fail at once. Called on the application's thread.
    void stop();

    /// @name Shows
    /// @{

    /// Replaces everything by the show. False when it has a fault; nothing has changed then, and @p faults
    /// names every one with its place.
    bool load(const QByteArray& json, QStringList& faults);
    /// The same from a file, which `AsyncSaveDeviceData` then writes.
    bool loadFile(const QString& path, QStringList& faults);
    /// The present state as a show. Any thread.
    QByteArray show() const;
    /// Writes the present state; the file holds the old or the new show whatever happens. Any thread.
    bool saveFile(const QString& path, QString& error) const;
    /// The file that `AsyncSaveDeviceData` writes; empty lets it fail. Any thread.
    void setShowFile(const QString& path);
    /// @}

    /// All devices, and `signalModelChanged` for every change whatever its kind.
    ModelSignals& deviceList();
    /// The journal, and orders to fail or to take longer.
    Operations& operations();
    /// Changes that a user makes at the device or in the application. Any thread.
    Control& control();

private:
    Q_DISABLE_COPY_MOVE(MemoryModel)

    ShowRecord snapshot() const;
    void replace(const ShowRecord& show);
    bool saveShow(QString& error) const;

    struct Parts;
    std::unique_ptr<Parts> m_p;
};

} // namespace Orvane::MemoryModel
